// The sample pictures: BMP files of a bitmap block, byte for byte, and the synthetic scan.
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

TEST(BitmapSamples, SyntheticScanHasTiltAndBumps)
{
    const std::vector<int> scan = orlex::SyntheticScan(100, 200);
    ASSERT_EQ(scan.size(), 20000u);
    auto at = [&](double u, double v) { return scan[std::size_t(v * 100) * 200 + std::size_t(u * 200)]; };
    EXPECT_LT(at(0.05, 0.1), at(0.95, 0.1));  // the tilt rises along x
    EXPECT_GT(at(0.30, 0.65), at(0.40, 0.45)); // a raised bump
    EXPECT_LT(at(0.70, 0.30), at(0.80, 0.30)); // the pit
    EXPECT_TRUE(orlex::SyntheticScan(0, 5).empty());
}
