#include "visa/resource_name.h"

#include <gtest/gtest.h>

namespace visa_provider {
namespace {

ResourceName Parsed(std::string_view text) {
    ResourceName name;
    EXPECT_EQ(ParseResourceName(text, name), VI_SUCCESS) << text;
    return name;
}

ViStatus StatusOf(std::string_view text) {
    ResourceName name;
    return ParseResourceName(text, name);
}

TEST(ResourceNameTest, Socket) {
    const auto name = Parsed("TCPIP2::scope-1.lab.example::4000::SOCKET");
    EXPECT_EQ(name.kind, ResourceKind::kSocket);
    EXPECT_EQ(name.board, 2);
    EXPECT_EQ(name.host, "scope-1.lab.example");
    EXPECT_EQ(name.port, 4000);
    EXPECT_EQ(name.Class(), "SOCKET");
    EXPECT_EQ(name.Canonical(), "TCPIP2::scope-1.lab.example::4000::SOCKET");
}

TEST(ResourceNameTest, BoardIsZeroWhenLeftOut) {
    EXPECT_EQ(Parsed("TCPIP::127.0.0.1::5025::SOCKET").Canonical(),
              "TCPIP0::127.0.0.1::5025::SOCKET");
}

TEST(ResourceNameTest, KeywordsInAnyCase) {
    EXPECT_EQ(Parsed("tcpip0::Host::1::socket").Canonical(), "TCPIP0::Host::1::SOCKET");
    EXPECT_EQ(Parsed("Virtual::pl7254c::Instr").Canonical(), "VIRTUAL::pl7254c::INSTR");
}

TEST(ResourceNameTest, AddressWithColonsInBrackets) {
    const auto name = Parsed("TCPIP::[fe80::1%eth0]::5025::SOCKET");
    EXPECT_EQ(name.host, "[fe80::1%eth0]");
    EXPECT_EQ(name.port, 5025);
}

TEST(ResourceNameTest, HighestPortAndBoard) {
    const auto name = Parsed("TCPIP65535::h::65535::SOCKET");
    EXPECT_EQ(name.board, 65535);
    EXPECT_EQ(name.port, 65535);
}

TEST(ResourceNameTest, VirtualInstrument) {
    const auto name = Parsed("VIRTUAL::PL7254C::INSTR");
    EXPECT_EQ(name.kind, ResourceKind::kVirtual);
    EXPECT_EQ(name.model, "PL7254C");
    EXPECT_EQ(name.Class(), "INSTR");
}

TEST(ResourceNameTest, VirtualInstrumentWithoutAModelIsTheDefaultOne) {
    EXPECT_EQ(Parsed("VIRTUAL::INSTR").Canonical(), "VIRTUAL::PL7254C::INSTR");
}

TEST(ResourceNameTest, InterfacesThatAreNotReachedAreNotFound) {
    for (const char* text :
         {"GPIB0::1::INSTR", "GPIB::1::2::INSTR", "GPIB-VXI0::9::INSTR", "VXI0::1::INSTR",
          "ASRL1::INSTR", "USB0::0x1234::0x5678::A22-5::INSTR", "PXI0::3-18::INSTR",
          "TCPIP::scope::INSTR", "TCPIP::scope::inst0::INSTR", "TCPIP::scope",
          "TCPIP0::scope::hislip0,4880::INSTR", "TCPIP::SERVANT"}) {
        EXPECT_EQ(StatusOf(text), VI_ERROR_RSRC_NFOUND) << text;
    }
}

TEST(ResourceNameTest, SecureConnectionsAreRefusedRatherThanMadeInTheClear) {
    EXPECT_EQ(StatusOf("TCPIP::@scope::5025::SOCKET"), VI_ERROR_INV_PROT);
    EXPECT_EQ(StatusOf("TCPIP::Creds@[fe80::1]::5025::SOCKET"), VI_ERROR_INV_PROT);
}

TEST(ResourceNameTest, WhatIsNoNameIsRefused) {
    using namespace std::string_view_literals;
    for (const auto text : {""sv,
                            " "sv,
                            ":"sv,
                            "::"sv,
                            ":::"sv,
                            "::::"sv,
                            ":::::::"sv,
                            "TCPIP"sv,
                            "TCPIP::"sv,
                            "TCPIP::::"sv,
                            "TCPIP::::::SOCKET"sv,
                            "TCPIP::::5025::SOCKET"sv,
                            "TCPIP::host::::SOCKET"sv,
                            "TCPIP::host::0::SOCKET"sv,
                            "TCPIP::host::65536::SOCKET"sv,
                            "TCPIP::host::-1::SOCKET"sv,
                            "TCPIP::host::+1::SOCKET"sv,
                            "TCPIP::host::1x::SOCKET"sv,
                            "TCPIP::host:: 1::SOCKET"sv,
                            "TCPIP::host::99999999999999999999::SOCKET"sv,
                            "TCPIP::host::1::SOCKETS"sv,
                            "TCPIP::host::1::SOCKET "sv,
                            " TCPIP::host::1::SOCKET"sv,
                            "TCPIP::host::1::SOCKET::"sv,
                            "TCPIP::host::1::SOCKET::INSTRUMENT"sv,
                            "TCPIP65536::host::1::SOCKET"sv,
                            "TCPIP-1::host::1::SOCKET"sv,
                            "TCPIPx::host::1::SOCKET"sv,
                            "TCPIP1x::host::1::SOCKET"sv,
                            "TCPI::host::1::SOCKET"sv,
                            "TCPIP:host:1:SOCKET"sv,
                            "TCPIP::ho st::1::SOCKET"sv,
                            "TCPIP::ho:st::1::SOCKET"sv,
                            "TCPIP::h\nst::1::SOCKET"sv,
                            "TCPIP::h\0st::1::SOCKET"sv,
                            "TCPIP::[::1::SOCKET"sv,
                            "TCPIP::[]::1::SOCKET"sv,
                            "TCPIP::[::1]x::1::SOCKET"sv,
                            "TCPIP::[[::1]]::1::SOCKET"sv,
                            "TCPIP::]::1::SOCKET"sv,
                            "VIRTUAL"sv,
                            "VIRTUAL::"sv,
                            "VIRTUAL::PL7254C"sv,
                            "VIRTUAL::::INSTR"sv,
                            "VIRTUAL::PL7254C::INSTR::"sv,
                            "VIRTUAL::PL 7254::INSTR"sv,
                            "VIRTUAL::a::b::INSTR"sv,
                            "VIRTUAL::PL7254C::SOCKET"sv,
                            "VIRTUAL0::PL7254C::INSTR"sv,
                            "GPIB"sv,
                            "FOO::1::INSTR"sv,
                            "COM1"sv,
                            "host"sv,
                            "127.0.0.1:5025"sv,
                            "\xff\xfe"sv}) {
        EXPECT_EQ(StatusOf(text), VI_ERROR_INV_RSRC_NAME) << text;
    }
}

TEST(ResourceNameTest, NameThatCannotBeGivenBackIsRefused) {
    // "TCPIP0::" and "::1::SOCKET" are 19 characters; 255 is the most that an attribute holds.
    const std::string longest = "TCPIP::" + std::string(236, 'h') + "::1::SOCKET";
    EXPECT_EQ(Parsed(longest).Canonical().size(), 255U);
    EXPECT_EQ(StatusOf("TCPIP::" + std::string(237, 'h') + "::1::SOCKET"), VI_ERROR_INV_RSRC_NAME);
    EXPECT_EQ(StatusOf(std::string(100000, ':')), VI_ERROR_INV_RSRC_NAME);
    EXPECT_EQ(StatusOf(std::string(100000, '[')), VI_ERROR_INV_RSRC_NAME);
}

}  // namespace
}  // namespace visa_provider
