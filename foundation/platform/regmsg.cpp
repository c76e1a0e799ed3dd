// The table of registered messages.
//
// A process must have exactly one table, or two modules could hand out different numbers
// for the same literal. The shared library exports the table's entry points under C names;
// every copy of this file (the shared library, or a program that links the static archive
// as well) looks those names up in the global symbol scope first and uses whatever table
// it finds there. A module's own table is used only when nothing is exported, which is the
// case of a program that carries the sole copy itself.
#include "foundation/platform/regmsg.h"

#include <dlfcn.h>

#include <cassert>
#include <cstring>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

constexpr std::size_t kMaxNameLength = 255;

std::string FoldCase(const char* name, std::size_t n) {
    std::string key(name, n);
    for (char& c : key)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return key;
}

class MessageTable {
public:
    UINT Register(const char* name) {
        if (!name || !*name) return 0;
        const std::size_t n = std::strlen(name);
        if (n > kMaxNameLength) return 0;
        const std::string key = FoldCase(name, n);
        std::lock_guard<std::mutex> guard(m_lock);
        auto it = m_numbers.find(key);
        if (it != m_numbers.end()) return it->second;
        const std::size_t capacity = ORLEX_REGISTERED_MESSAGE_LAST - ORLEX_REGISTERED_MESSAGE_FIRST + 1;
        if (m_names.size() >= capacity) return 0;
        const UINT number = ORLEX_REGISTERED_MESSAGE_FIRST + static_cast<UINT>(m_names.size());
        m_names.emplace_back(name, n);
        m_numbers.emplace(key, number);
        return number;
    }

    // Copies the name into buf (size bytes, terminated); returns its length, or 0.
    std::size_t Name(UINT message, char* buf, std::size_t size) {
        std::lock_guard<std::mutex> guard(m_lock);
        if (message < ORLEX_REGISTERED_MESSAGE_FIRST) return 0;
        const std::size_t index = message - ORLEX_REGISTERED_MESSAGE_FIRST;
        if (index >= m_names.size() || size == 0) return 0;
        const std::string& s = m_names[index];
        const std::size_t n = s.size() < size - 1 ? s.size() : size - 1;
        std::memcpy(buf, s.data(), n);
        buf[n] = '\0';
        return n;
    }

private:
    std::mutex m_lock;
    std::unordered_map<std::string, UINT> m_numbers;
    std::vector<std::string> m_names;
};

// Never destroyed: registrations may come from other statics' destructors.
MessageTable& OwnTable() {
    static MessageTable* table = new MessageTable;
    return *table;
}

}  // namespace

// The exported entry points of this module's table. Versioned names: a table of another
// layout would export other names and never be mixed with this one.
extern "C" __attribute__((visibility("default"))) UINT orlexui_register_message_v1(const char* name) {
    return OwnTable().Register(name);
}
extern "C" __attribute__((visibility("default"))) std::size_t orlexui_message_name_v1(UINT message, char* buf,
                                                                                       std::size_t size) {
    return OwnTable().Name(message, buf, size);
}

namespace {

using RegisterFn = UINT (*)(const char*);
using NameFn = std::size_t (*)(UINT, char*, std::size_t);

struct ProcessTable {
    RegisterFn registerFn;
    NameFn nameFn;
};

// The first table exported in the global scope wins; both entry points must come from the
// same module, so they are looked up together.
const ProcessTable& Resolve() {
    static const ProcessTable table = [] {
        void* reg = dlsym(RTLD_DEFAULT, "orlexui_register_message_v1");
        void* name = dlsym(RTLD_DEFAULT, "orlexui_message_name_v1");
        if (reg && name) {
            Dl_info a{}, b{};
            if (dladdr(reg, &a) && dladdr(name, &b) && a.dli_fbase == b.dli_fbase)
                return ProcessTable{reinterpret_cast<RegisterFn>(reg), reinterpret_cast<NameFn>(name)};
        }
        return ProcessTable{&orlexui_register_message_v1, &orlexui_message_name_v1};
    }();
    return table;
}

}  // namespace

UINT RegisterWindowMessageA(LPCSTR name) {
    const UINT number = Resolve().registerFn(name);
    assert(number == 0 || (number >= ORLEX_REGISTERED_MESSAGE_FIRST && number <= ORLEX_REGISTERED_MESSAGE_LAST));
    return number;
}

namespace orlex {

std::string RegisteredMessageName(UINT message) {
    char buf[kMaxNameLength + 1];
    const std::size_t n = Resolve().nameFn(message, buf, sizeof buf);
    return std::string(buf, n);
}

}  // namespace orlex
