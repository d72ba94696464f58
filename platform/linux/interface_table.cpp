#include "kestrion/platform/interface_table.h"

#include <map>
#include <mutex>

namespace kestrion {
namespace {

struct InterfaceTable {
    std::mutex lock;
    std::map<DWORD, ComPtr<IUnknown>> entries;
    DWORD last = 0;
};

InterfaceTable& Table() {
    static InterfaceTable table;
    return table;
}

}  // namespace

HRESULT RegisterInterface(IUnknown* object, REFIID iid, DWORD* cookie) {
    if (cookie == nullptr) {
        return E_POINTER;
    }
    *cookie = 0;
    if (object == nullptr) {
        return E_INVALIDARG;
    }
    void* found = nullptr;
    if (const HRESULT status = object->QueryInterface(iid, &found); Failed(status)) {
        return status;
    }
    // Held through the identity pointer: every interface begins with IUnknown.
    auto held = ComPtr<IUnknown>::Attach(static_cast<IUnknown*>(found));
    InterfaceTable& table = Table();
    const std::lock_guard guard(table.lock);
    do {
        ++table.last;
    } while (table.last == 0 || table.entries.contains(table.last));
    table.entries.emplace(table.last, std::move(held));
    *cookie = table.last;
    return S_OK;
}

HRESULT GetInterface(DWORD cookie, REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    ComPtr<IUnknown> held;
    {
        InterfaceTable& table = Table();
        const std::lock_guard guard(table.lock);
        const auto entry = table.entries.find(cookie);
        if (entry == table.entries.end()) {
            return E_INVALIDARG;
        }
        held = entry->second;
    }
    return held->QueryInterface(iid, object);
}

HRESULT RevokeInterface(DWORD cookie) {
    // Declared before the lock, so released after it: the last count may run the object's own
    // shut-down, which may come back here.
    ComPtr<IUnknown> held;
    InterfaceTable& table = Table();
    const std::lock_guard guard(table.lock);
    const auto entry = table.entries.find(cookie);
    if (entry == table.entries.end()) {
        return E_INVALIDARG;
    }
    held = std::move(entry->second);
    table.entries.erase(entry);
    return S_OK;
}

}  // namespace kestrion
