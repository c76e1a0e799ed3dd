// Registered messages and the catalogue: numbers in the registered range, one number per
// literal whatever the thread or the case, and the catalogue filled before other statics.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "foundation/MessageCatalogue.h"
#include "foundation/platform/regmsg.h"

namespace {

// Seen by a static initialiser of ordinary priority: the catalogue must already be filled.
const UINT g_seenAtStaticInit = MESSAGE_CURSOR_NOTIFY_STR;

// The literals exactly as the controls and hosts spell them, in catalogue order.
const char* const kLiterals[] = {
    "MESSAGE_CURSOR_NOTIFY_STR",          "MESSAGE_CURSOR_MOUSE_STR",
    "MESSAGE_REMOVE_CURSOR_STR",          "MESSAGE_USER_REMOVE_CURSOR_STR",
    "MESSAGE_CREATE_CURSOR_STR",          "MESSAGE_ZOOM_EVENT_STR",
    "MESSAGE_IMAGEVIEW_PAN_EVENT",        "UPDATE_PAN_SRC_STR",
    "ACTIVATE_VIEW_STR",                  "ZOOM_OUT_STR",
    "MESSAGE_IMAGEVIEW_DBL_CLICK_STR",    "MESSAGE_IMAGEVIEW_MOUSE_WHEEL_STR",
    "MESSAGE_IMAGEVIEW_MDC_UPDATE_EVENT", "MESSAGE_UPDATE_TOOL_TIP",
    "IMAGE_3D_EVENT_STR",                 "IMAGE_3D_LIGHT_DIRECTION_EVENT_STR",
    "RENDER_DIRECT_2D_STR",               "MESSAGE_INVALID_DISP_UPDATE_STR",
    "MESSAGE_USER_CONTROL_MSG",           "MESSAGE_COLOR_CTRL_STR",
    "MESSAGE_BORDERCON_ADJUST_FOCUS_STR", "MESSAGE_BORDERCON_DIALOG_DELETED_STR",
    "MESSAGE_GRID_NOTIFY",                "MESSAGE_GRID_ZOOM_EVENT",
    "MESSAGE_COLOR_CHANGE",               "MESSAGE_ACTIVE_CURVE_CHANGE",
    "MESSAGE_EXPORT_XZ_DATA",             "MESSAGE_USER_GRID_SCALE_SYNCH",
};

TEST(MessageCatalogue, EveryLiteralHasItsOwnRegisteredNumber) {
    std::size_t count = 0;
    const OrlexUI::MessageCatalogueEntry* entries = OrlexUI::MessageCatalogue(&count);
    ASSERT_EQ(count, std::size(kLiterals));
    std::set<UINT> numbers;
    for (std::size_t i = 0; i < count; ++i) {
        SCOPED_TRACE(kLiterals[i]);
        EXPECT_STREQ(entries[i].literal, kLiterals[i]);
        const UINT n = *entries[i].number;
        EXPECT_GE(n, 0xC000u);
        EXPECT_LE(n, 0xFFFFu);
        // A host that registers the literal itself gets the library's number.
        EXPECT_EQ(RegisterWindowMessageA(kLiterals[i]), n);
        EXPECT_EQ(orlex::RegisteredMessageName(n), kLiterals[i]);
        numbers.insert(n);
    }
    EXPECT_EQ(numbers.size(), count);
}

TEST(MessageCatalogue, VariablesAreNamedAfterTheirLiterals) {
    EXPECT_EQ(MESSAGE_CURSOR_NOTIFY_STR, RegisterWindowMessageA("MESSAGE_CURSOR_NOTIFY_STR"));
    EXPECT_EQ(MESSAGE_COLOR_CTRL_STR, RegisterWindowMessageA("MESSAGE_COLOR_CTRL_STR"));
    EXPECT_EQ(MESSAGE_GRID_ZOOM_EVENT, RegisterWindowMessageA("MESSAGE_GRID_ZOOM_EVENT"));
    EXPECT_EQ(MESSAGE_USER_GRID_SCALE_SYNCH, RegisterWindowMessageA("MESSAGE_USER_GRID_SCALE_SYNCH"));
}

TEST(MessageCatalogue, FilledBeforeOrdinaryStaticInitialisers) {
    EXPECT_NE(g_seenAtStaticInit, 0u);
    EXPECT_EQ(g_seenAtStaticInit, MESSAGE_CURSOR_NOTIFY_STR);
}

TEST(MessageCatalogue, RegisteringAgainChangesNothing) {
    const UINT before = MESSAGE_ZOOM_EVENT_STR;
    OrlexUI::RegisterMessageCatalogue();
    EXPECT_EQ(MESSAGE_ZOOM_EVENT_STR, before);
}

struct NameCase {
    const char* name;
    bool valid;
};

TEST(RegisterWindowMessage, RefusesWhatTheAtomTableRefuses) {
    const std::string longest(255, 'x');
    const std::string tooLong(256, 'y');
    const NameCase cases[] = {
        {nullptr, false}, {"", false}, {tooLong.c_str(), false}, {longest.c_str(), true}, {"a", true},
        {"with space and \xE9", true},
    };
    for (const NameCase& c : cases) {
        SCOPED_TRACE(c.name ? c.name : "(null)");
        const UINT n = RegisterWindowMessageA(c.name);
        if (c.valid) {
            EXPECT_GE(n, 0xC000u);
            EXPECT_LE(n, 0xFFFFu);
        } else {
            EXPECT_EQ(n, 0u);
        }
    }
}

TEST(RegisterWindowMessage, CaseOfLettersDoesNotMakeAnotherMessage) {
    const UINT a = RegisterWindowMessageA("orlex test Mixed Case");
    EXPECT_EQ(RegisterWindowMessageA("ORLEX TEST MIXED CASE"), a);
    EXPECT_EQ(RegisterWindowMessageA("orlex test mixed case"), a);
    EXPECT_NE(RegisterWindowMessageA("orlex test mixed case "), a);
    // The name keeps the spelling of its first registration.
    EXPECT_EQ(orlex::RegisteredMessageName(a), "orlex test Mixed Case");
    EXPECT_EQ(orlex::RegisteredMessageName(0x1234), "");
}

TEST(RegisterWindowMessage, SameLiteralSameNumberAcrossThreads) {
    constexpr int kThreads = 8;
    constexpr int kNames = 64;
    std::vector<std::string> names;
    for (int i = 0; i < kNames; ++i) names.push_back("orlex thread race " + std::to_string(i));
    std::vector<std::vector<UINT>> seen(kThreads, std::vector<UINT>(kNames));
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            // Each thread walks the names in its own order so that first registrations race.
            for (int k = 0; k < kNames; ++k) {
                const int i = (k * (2 * t + 1) + t) % kNames;
                seen[t][i] = RegisterWindowMessageA(names[i].c_str());
            }
        });
    }
    for (std::thread& th : threads) th.join();
    std::set<UINT> distinct;
    for (int i = 0; i < kNames; ++i) {
        for (int t = 1; t < kThreads; ++t) EXPECT_EQ(seen[t][i], seen[0][i]) << names[i];
        distinct.insert(seen[0][i]);
    }
    EXPECT_EQ(distinct.size(), static_cast<std::size_t>(kNames));
    EXPECT_EQ(*distinct.begin() >= 0xC000u, true);
}

}  // namespace
