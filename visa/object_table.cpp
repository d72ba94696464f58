#include "visa/object_table.h"

namespace visa_provider {

ViStatus Object::SetAttribute(ViAttr attribute, ViAttrState /*state*/) {
    return Attribute(attribute) ? VI_ERROR_ATTR_READONLY : VI_ERROR_NSUP_ATTR;
}

ObjectTable& ObjectTable::Instance() {
    static auto& table = *new ObjectTable;
    return table;
}

ViObject ObjectTable::NextHandle() {
    do {
        ++last_;
    } while (last_ == 0 || entries_.contains(last_));
    return last_;
}

ViObject ObjectTable::Insert(const std::shared_ptr<Object>& object, ViObject owner) {
    const std::lock_guard guard(mutex_);
    if (owner != 0 && !entries_.contains(owner)) {
        return 0;
    }
    const ViObject handle = NextHandle();
    object->handle_ = handle;
    entries_.emplace(handle, Entry{object, owner});
    return handle;
}

std::shared_ptr<Object> ObjectTable::Find(ViObject handle) const {
    const std::lock_guard guard(mutex_);
    const auto found = entries_.find(handle);
    return found == entries_.end() ? nullptr : found->second.object;
}

std::vector<std::shared_ptr<Object>> ObjectTable::Remove(ViObject handle) {
    std::vector<std::shared_ptr<Object>> removed;
    const std::lock_guard guard(mutex_);
    const auto found = entries_.find(handle);
    if (found == entries_.end()) {
        return removed;
    }
    auto self = found->second.object;
    entries_.erase(found);
    for (auto entry = entries_.begin(); entry != entries_.end();) {
        if (entry->second.owner != handle) {
            ++entry;
            continue;
        }
        removed.push_back(std::move(entry->second.object));
        entry = entries_.erase(entry);
    }
    removed.push_back(std::move(self));
    return removed;
}

}  // namespace visa_provider
