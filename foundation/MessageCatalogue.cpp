#include "foundation/MessageCatalogue.h"

#include <mutex>

#define ORLEX_DEFINE_MESSAGE(name) UINT name = 0;
ORLEX_MESSAGE_CATALOGUE(ORLEX_DEFINE_MESSAGE)
#undef ORLEX_DEFINE_MESSAGE

namespace OrlexUI {

namespace {

#define ORLEX_CATALOGUE_ENTRY(name) {#name, &name},
const MessageCatalogueEntry kCatalogue[] = {ORLEX_MESSAGE_CATALOGUE(ORLEX_CATALOGUE_ENTRY)};
#undef ORLEX_CATALOGUE_ENTRY

}  // namespace

const MessageCatalogueEntry* MessageCatalogue(std::size_t* count) {
    if (count) *count = sizeof kCatalogue / sizeof kCatalogue[0];
    return kCatalogue;
}

void RegisterMessageCatalogue() {
    static std::once_flag once;
    std::call_once(once, [] {
#define ORLEX_REGISTER_MESSAGE(name) name = RegisterWindowMessageA(#name);
        ORLEX_MESSAGE_CATALOGUE(ORLEX_REGISTER_MESSAGE)
#undef ORLEX_REGISTER_MESSAGE
    });
}

namespace {

// Runs before every static initialiser of default priority in the library, so that no
// other static can see a variable still at 0.
struct CatalogueAtLoad {
    CatalogueAtLoad() { RegisterMessageCatalogue(); }
};
__attribute__((init_priority(101))) CatalogueAtLoad catalogueAtLoad;

}  // namespace

}  // namespace OrlexUI
