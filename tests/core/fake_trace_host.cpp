#include "tests/core/fake_trace_host.h"

#include <utility>

namespace kestrion::test {
namespace {

class FakeOutputFile final : public OutputFile {
  public:
    explicit FakeOutputFile(std::shared_ptr<FakeFile> file) : file_(std::move(file)) {}
    FakeOutputFile(const FakeOutputFile&) = delete;
    FakeOutputFile& operator=(const FakeOutputFile&) = delete;
    ~FakeOutputFile() override { file_->isOpen = false; }

    HRESULT Write(std::string_view bytes) override {
        if (Succeeded(file_->writeStatus)) {
            file_->content += bytes;
        }
        return file_->writeStatus;
    }
    HRESULT Flush() override {
        ++file_->flushes;
        return file_->flushStatus;
    }
    HRESULT Size(std::uint64_t& size) override {
        size = file_->content.size() + file_->extraSize;
        return file_->sizeStatus;
    }

  private:
    std::shared_ptr<FakeFile> file_;
};

}  // namespace

std::uint64_t FakeTraceHost::Counter() const {
    return std::exchange(counter, counter + counterStep);
}

HRESULT FakeTraceHost::CreateOutputFile(const std::string& path,
                                        std::unique_ptr<OutputFile>& file) const {
    paths.push_back(path);
    if (Failed(createStatus)) {
        return createStatus;
    }
    files.push_back(std::make_shared<FakeFile>());
    files.back()->writeStatus = firstWriteStatus;
    file = std::make_unique<FakeOutputFile>(files.back());
    return S_OK;
}

}  // namespace kestrion::test
