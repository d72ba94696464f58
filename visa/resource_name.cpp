#include "visa/resource_name.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

namespace visa_provider {

namespace {

constexpr bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
constexpr char Capital(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

// The segments between the double colons, but for those within square brackets.
std::vector<std::string_view> Segments(std::string_view text) {
    std::vector<std::string_view> segments;
    std::size_t start = 0;
    bool inBrackets = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '[') {
            inBrackets = true;
        }
        if (text[at] == ']') {
            inBrackets = false;
        }
        if (inBrackets || text.substr(at, 2) != "::") {
            continue;
        }
        segments.push_back(text.substr(start, at - start));
        start = at + 2;
        ++at;
    }
    segments.push_back(text.substr(start));
    return segments;
}

std::optional<ViUInt16> Number(std::string_view digits) {
    ViUInt16 value = 0;
    const auto* last = digits.data() + digits.size();
    const auto [end, error] = std::from_chars(digits.data(), last, value);
    if (digits.empty() || error != std::errc{} || end != last) {
        return std::nullopt;
    }
    return value;
}

bool IsHost(std::string_view host) {
    if (host.empty()) {
        return false;
    }
    if (host.front() == '[') {
        return host.size() > 2 && host.find(']') == host.size() - 1 &&
               std::ranges::all_of(host.substr(1, host.size() - 2), [](char c) {
                   return IsLetter(c) || IsDigit(c) || c == ':' || c == '.' || c == '%';
               });
    }
    return std::ranges::all_of(
        host, [](char c) { return IsLetter(c) || IsDigit(c) || c == '-' || c == '.' || c == '_'; });
}

bool IsModel(std::string_view model) {
    return !model.empty() && std::ranges::all_of(model, [](char c) {
        return IsLetter(c) || IsDigit(c) || c == '-' || c == '_';
    });
}

ViStatus ParseSocket(const std::vector<std::string_view>& segments, ResourceName& name) {
    const std::string_view host = segments[1];
    if (host.find('@') != std::string_view::npos) {
        return VI_ERROR_INV_PROT;
    }
    const auto port = Number(segments[2]);
    if (!IsHost(host) || !port || *port == 0) {
        return VI_ERROR_INV_RSRC_NAME;
    }
    name.kind = ResourceKind::kSocket;
    name.host = host;
    name.port = *port;
    return VI_SUCCESS;
}

// True for the classes of LAN resources that are reached through protocols other than a socket.
bool IsOtherLanName(const std::vector<std::string_view>& segments) {
    if (segments.size() == 2) {
        return IsHost(segments[1]);
    }
    const auto& last = segments.back();
    return SameIgnoringCase(last, "INSTR") || SameIgnoringCase(last, "SERVANT");
}

ViStatus ParseLan(const std::vector<std::string_view>& segments, std::string_view boardDigits,
                  ResourceName& name) {
    if (!boardDigits.empty()) {
        const auto board = Number(boardDigits);
        if (!board) {
            return VI_ERROR_INV_RSRC_NAME;
        }
        name.board = *board;
    }
    if (segments.size() == 4 && SameIgnoringCase(segments[3], "SOCKET")) {
        return ParseSocket(segments, name);
    }
    return segments.size() >= 2 && IsOtherLanName(segments) ? VI_ERROR_RSRC_NFOUND
                                                            : VI_ERROR_INV_RSRC_NAME;
}

ViStatus ParseVirtual(const std::vector<std::string_view>& segments, ResourceName& name) {
    if (segments.size() != 2 && segments.size() != 3) {
        return VI_ERROR_INV_RSRC_NAME;
    }
    if (!SameIgnoringCase(segments.back(), "INSTR")) {
        return VI_ERROR_INV_RSRC_NAME;
    }
    const std::string_view model = segments.size() == 3 ? segments[1] : kDefaultModel;
    if (!IsModel(model)) {
        return VI_ERROR_INV_RSRC_NAME;
    }
    name.kind = ResourceKind::kVirtual;
    name.model = model;
    return VI_SUCCESS;
}

bool IsOtherInterface(std::string_view keyword) {
    constexpr std::string_view kOthers[] = {"GPIB", "GPIB-VXI", "VXI", "ASRL", "USB", "PXI"};
    return std::ranges::any_of(
        kOthers, [keyword](std::string_view other) { return SameIgnoringCase(keyword, other); });
}

}  // namespace

bool SameIgnoringCase(std::string_view one, std::string_view other) {
    return std::ranges::equal(one, other, {}, Capital, Capital);
}

std::string InCapitals(std::string_view text) {
    std::string capitals(text);
    std::ranges::transform(capitals, capitals.begin(), Capital);
    return capitals;
}

std::string ResourceName::Canonical() const {
    if (kind == ResourceKind::kVirtual) {
        return "VIRTUAL::" + model + "::INSTR";
    }
    return "TCPIP" + std::to_string(board) + "::" + host + "::" + std::to_string(port) + "::SOCKET";
}

std::string ResourceName::Class() const {
    return kind == ResourceKind::kVirtual ? "INSTR" : "SOCKET";
}

std::string ResourceName::InterfaceName() const {
    if (kind == ResourceKind::kVirtual) {
        return "Virtual instrument " + model;
    }
    return "TCPIP" + std::to_string(board) + " (raw socket to " + host + ")";
}

ViStatus ParseResourceName(std::string_view text, ResourceName& name) {
    name = ResourceName{};
    const auto segments = Segments(text);
    const std::string_view first = segments.front();
    const auto digits = std::ranges::find_if(first, IsDigit);
    const std::string_view keyword(first.begin(), digits);
    const std::string_view board(digits, first.end());
    ViStatus status = VI_ERROR_INV_RSRC_NAME;
    if (SameIgnoringCase(keyword, "TCPIP")) {
        status = ParseLan(segments, board, name);
    } else if (SameIgnoringCase(first, "VIRTUAL")) {
        status = ParseVirtual(segments, name);
    } else if (IsOtherInterface(keyword) && segments.size() > 1) {
        status = VI_ERROR_RSRC_NFOUND;
    }
    if (status == VI_SUCCESS && name.Canonical().size() > kMaxResourceName) {
        return VI_ERROR_INV_RSRC_NAME;
    }
    return status;
}

}  // namespace visa_provider
