#include "bench/plain_object.h"

namespace bench {
namespace {

class Object final : public IPlainObject {
  public:
    HRESULT get_NumberOfAverages(LONG* val) override {
        *val = averages_;
        return S_OK;
    }
    HRESULT put_NumberOfAverages(LONG val) override {
        averages_ = val;
        return S_OK;
    }

  private:
    LONG averages_ = 0;
};

}  // namespace

IPlainObject& PlainObject() {
    static Object object;
    return object;
}

}  // namespace bench
