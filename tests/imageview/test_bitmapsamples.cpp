// The sample pictures: BMP files of a bitmap block, byte for byte.
#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "colour/ColorTable.h"
#include "imageview/BitmapSamples.h"

namespace {

using Bytes = std::vector<unsigned char>;

Bytes ReadAll(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

unsigned Le32(const Bytes& b, std::size_t at) { return b[at] | b[at + 1] << 8 | b[at + 2] << 16 | unsigned(b[at + 3]) << 24; }

}  // namespace

TEST(BitmapSamples, BmpFilesPadTheirRows)
{
    // 2 rows x 3 columns: rows padded to 4 bytes (8-bit) and 12 bytes (24-bit, 9 + 3).
    const std::vector<int> data = {INT_MIN, 0, INT_MAX, INT_MAX, 0, INT_MIN};
    const double h = 2147483647.5;
    tagRGBQUAD grey[256];
    CreateColorTable(25, 256, grey);
    struct Case {
        bool realTime;
        unsigned offBits, imageSize;
        Bytes pixels;
    } cases[] = {
        // "None" keeps index 255 free: the top value is 254.
        {true, 14 + 1064, 8, {0, 127, 254, 0, 254, 127, 0, 0}},
        {false, 14 + 40, 24, {0, 0, 0, 127, 127, 127, 254, 254, 254, 0, 0, 0,
                              254, 254, 254, 127, 127, 127, 0, 0, 0, 0, 0, 0}},
    };
    const std::string path = ::testing::TempDir() + "orlex_sample.bmp";
    for (const Case& c : cases) {
        SCOPED_TRACE(c.realTime ? "8-bit" : "24-bit");
        ASSERT_TRUE(orlex::WriteDataBmp(path, data, 2, 3, 25, -h, h, c.realTime));
        const Bytes b = ReadAll(path);
        ASSERT_EQ(b.size(), c.offBits + c.imageSize);
        EXPECT_EQ(b[0], 'B');
        EXPECT_EQ(b[1], 'M');
        EXPECT_EQ(Le32(b, 2), b.size());
        EXPECT_EQ(Le32(b, 10), c.offBits);
        EXPECT_EQ(Le32(b, 14), 40u);
        EXPECT_EQ(Le32(b, 18), 3u);
        EXPECT_EQ(Le32(b, 22), 2u);
        EXPECT_EQ(Le32(b, 34), c.imageSize);
        EXPECT_EQ(Bytes(b.begin() + c.offBits, b.end()), c.pixels);
    }
    std::remove(path.c_str());
    EXPECT_FALSE(orlex::WriteDataBmp(path, data, 3, 3, 25, -h, h, true));  // data too short
    EXPECT_FALSE(orlex::WriteDataBmp(path, data, 2, 3, 25, 1.0, 1.0, false));  // no 24-bit range
}
