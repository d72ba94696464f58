#include "store/store_location.h"

#include <utility>

#include "platform/files.h"
#include "store/xml_store.h"

namespace kestrion {
namespace {

// A file that may hold the store, and why it is looked at.
struct Candidate {
    std::string path;
    std::string reason;
};

std::vector<Candidate> CandidatesInFolders(const StoreSeams& seams) {
    const ConfigurationFolders folders = FindConfigurationFolders(seams.environment);
    std::vector<Candidate> candidates;
    if (!folders.user.empty()) {
        candidates.push_back(
            {folders.user + "/" + kStoreFile, "it is in the user's configuration folder"});
    }
    for (const std::string& folder : folders.system) {
        candidates.push_back(
            {folder + "/" + kStoreFile, "it is in the system's configuration folder"});
    }
    return candidates;
}

StoreSelection Refuse(const std::string& path, const std::string& why) {
    return {nullptr, path, "'" + path + "' can't be used: " + why};
}

// Nothing where there is no such file.
std::optional<StoreSelection> Open(const Candidate& candidate) {
    std::string bytes;
    std::string why;
    const HRESULT status = ReadWholeFile(candidate.path, kMaxStoreBytes, bytes, why);
    if (status == MakeStatus(0x80070003U)) {
        return std::nullopt;
    }
    if (Failed(status)) {
        return Refuse(candidate.path, why);
    }
    auto store = ReadXmlStore(bytes, why);
    if (store == nullptr) {
        return Refuse(candidate.path, why);
    }
    return StoreSelection{std::move(store), candidate.path, candidate.reason};
}

}  // namespace

StoreSelection OpenConfigurationStore(const StoreSeams& seams) {
    if (const auto named = seams.environment(kStoreVariable)) {
        const std::string reason =
            std::string("the environment variable ") + kStoreVariable + " names it";
        const auto opened = Open({*named, reason});
        return opened ? *opened : Refuse(*named, "there is no such file, but " + reason);
    }
    std::string tried;
    for (const Candidate& candidate : CandidatesInFolders(seams)) {
        if (auto opened = Open(candidate)) {
            return *std::move(opened);
        }
        tried += (tried.empty() ? "" : " nor ") + candidate.path;
    }
    return {nullptr, "",
            std::string("the environment variable ") + kStoreVariable + " isn't set" +
                (tried.empty() ? "" : ", and there is neither " + tried)};
}

}  // namespace kestrion
