// The default resource manager, of which each viOpenDefaultRM gives a session.
#pragma once

#include <atomic>
#include <memory>
#include <string_view>

#include "visa/object.h"
#include "visa/session.h"

namespace visa_provider {

class ResourceManager final : public Object {
  public:
    [[nodiscard]] std::optional<AttributeValue> Attribute(ViAttr attribute) const override;
    [[nodiscard]] ViStatus SetAttribute(ViAttr attribute, ViAttrState state) override;

  private:
    std::atomic<ViUInt32> maxQueueLength_ = SessionEvents::kDefaultQueueLength;
    std::atomic<ViUInt64> userData_ = 0;
};

// Opens a session to the resource of that name, without a handle yet. `timeout` in milliseconds
// bounds the whole of it. Errors are those of viOpen.
[[nodiscard]] ViStatus OpenSession(ViSession manager, std::string_view name, ViUInt32 timeout,
                                   std::shared_ptr<Session>& opened);

}  // namespace visa_provider
