// Searching for resources, and taking their names apart.
#include "tests/visa/session_fixture.h"
#include "visa/resource_pattern.h"

namespace visa_provider::testing {

bool Matches(std::string_view pattern, std::string_view name) {
    const auto parsed = ResourcePattern::Parse(pattern);
    EXPECT_TRUE(parsed) << pattern;
    return parsed && parsed->Matches(name);
}

// The examples of VPP-4.3, table 4.4.4.
TEST(ResourcePatternTest, ExamplesOfTheStandard) {
    EXPECT_TRUE(Matches("GPIB?*INSTR", "GPIB0::2::INSTR"));
    EXPECT_TRUE(Matches("GPIB?*INSTR", "GPIB-VXI1::8::INSTR"));
    EXPECT_TRUE(Matches("GPIB[0-9]*::?*INSTR", "GPIB1::1::1::INSTR"));
    EXPECT_FALSE(Matches("GPIB[0-9]*::?*INSTR", "GPIB-VXI1::8::INSTR"));
    EXPECT_FALSE(Matches("GPIB[0-9]::?*INSTR", "GPIB12::8::INSTR"));
    EXPECT_TRUE(Matches("GPIB[^0]::?*INSTR", "GPIB1::1::1::INSTR"));
    EXPECT_FALSE(Matches("GPIB[^0]::?*INSTR", "GPIB0::2::INSTR"));
    EXPECT_FALSE(Matches("GPIB[^0]::?*INSTR", "GPIB12::8::INSTR"));
    EXPECT_FALSE(Matches("VXI?*INSTR", "GPIB-VXI0::1::INSTR"));
    EXPECT_TRUE(Matches("?*VXI[0-9]*::?*INSTR", "GPIB-VXI0::1::INSTR"));
    EXPECT_TRUE(Matches("?*VXI[0-9]*::?*INSTR", "VXI0::1::INSTR"));
    EXPECT_TRUE(Matches("ASRL1+::INSTR", "ASRL11::INSTR"));
    EXPECT_FALSE(Matches("ASRL1+::INSTR", "ASRL2::INSTR"));
    EXPECT_FALSE(Matches("ASRL1+::INSTR", "ASRL::INSTR"));
    EXPECT_TRUE(Matches("(GPIB|VXI)?*INSTR", "VXI0::3::INSTR"));
    EXPECT_FALSE(Matches("(GPIB|VXI)?*INSTR", "ASRL2::INSTR"));
    EXPECT_TRUE(Matches("(GPIB0|VXI0)::1::INSTR", "VXI0::1::INSTR"));
    EXPECT_TRUE(Matches("?*", "anything"));
}

TEST(ResourcePatternTest, EitherSideIsTheWholeOfIt) {
    EXPECT_TRUE(Matches("VXI|GPIB", "VXI"));
    EXPECT_TRUE(Matches("VXI|GPIB", "GPIB"));
    EXPECT_FALSE(Matches("VXI|GPIB", "VXGPIB"));
    EXPECT_TRUE(Matches("A|B|C", "A"));
    EXPECT_TRUE(Matches("A|B|C", "C"));
}

TEST(ResourcePatternTest, CapitalsDoNotMatter) {
    EXPECT_TRUE(Matches("vxi?*[i]nstr", "VXI0::iNSTR"));
}

TEST(ResourcePatternTest, OrdinaryCharacterBehindABackslash) {
    EXPECT_TRUE(Matches("a\\?b", "A?B"));
    EXPECT_FALSE(Matches("a\\?b", "AxB"));
    EXPECT_TRUE(Matches("\\(\\*\\)", "(*)"));
}

TEST(ResourcePatternTest, NestedRepetitionIsNoDetour) {
    EXPECT_TRUE(Matches("(((a*)*)*)*", std::string(200, 'a')));
    EXPECT_FALSE(Matches("(((a*)*)*)*b", std::string(200, 'a')));
    EXPECT_FALSE(Matches("a" + std::string(200, '*') + "b", std::string(200, 'a')));
    EXPECT_TRUE(Matches("((((((((((a*b)*b)*b)*b)*b)*b)*b)*b)*b)*b)*", std::string(200, 'b')));
    EXPECT_TRUE(Matches("(a|a)*(a|a)*(a|a)*", std::string(200, 'a')));
}

TEST(ResourcePatternTest, WhatIsNoPattern) {
    for (const std::string_view pattern :
         {"", "*", "+", "a|*", "(", ")", "(a", "a)", "[", "[]", "[a", "[^]", "a]", "[z-a]", "\\",
          "a{b}", "?*{VI_ATTR_INTF_TYPE == 6}", "(a))"}) {
        EXPECT_FALSE(ResourcePattern::Parse(pattern)) << pattern;
    }
    EXPECT_FALSE(ResourcePattern::Parse(std::string(256, 'a')));
    EXPECT_FALSE(ResourcePattern::Parse(std::string(255, '(')));
}

using FindTest = VisaTest;

TEST_F(FindTest, FindsVirtualInstrumentsOneByOne) {
    ViFindList list = VI_NULL;
    ViUInt32 count = 0;
    char name[256] = "";
    ASSERT_EQ(viFindRsrc(manager_, "virtual::?*::instr", &list, &count, name), VI_SUCCESS);
    EXPECT_EQ(count, 3U);
    EXPECT_STREQ(name, "VIRTUAL::PL7254C::INSTR");
    EXPECT_EQ(viFindNext(list, name), VI_SUCCESS);
    EXPECT_STREQ(name, "VIRTUAL::SCRIPTED::INSTR");
    EXPECT_EQ(viFindNext(list, name), VI_SUCCESS);
    EXPECT_STREQ(name, "VIRTUAL::Mixed-Case::INSTR");
    EXPECT_EQ(viFindNext(list, name), VI_ERROR_RSRC_NFOUND);
    EXPECT_EQ(viFindNext(list, nullptr), VI_ERROR_USER_BUF);
    EXPECT_EQ(viGetAttribute(list, VI_ATTR_RSRC_NAME, name), VI_ERROR_NSUP_ATTR);
    EXPECT_EQ(viClose(list), VI_SUCCESS);
    EXPECT_EQ(viFindNext(list, name), VI_ERROR_INV_OBJECT);
}

TEST_F(FindTest, ListAndCountMayBeLeftOut) {
    char name[256] = "";
    EXPECT_EQ(viFindRsrc(manager_, "?*SCRIPTED?*", nullptr, nullptr, name), VI_SUCCESS);
    EXPECT_STREQ(name, "VIRTUAL::SCRIPTED::INSTR");
}

TEST_F(FindTest, ManagerClosesItsLists) {
    ViSession manager = VI_NULL;
    ASSERT_EQ(viOpenDefaultRM(&manager), VI_SUCCESS);
    ViFindList list = VI_NULL;
    char name[256] = "";
    ASSERT_EQ(viFindRsrc(manager, "?*", &list, nullptr, name), VI_SUCCESS);
    EXPECT_EQ(viClose(manager), VI_SUCCESS);
    EXPECT_EQ(viClose(list), VI_ERROR_INV_OBJECT);
}

TEST_F(FindTest, Failures) {
    char name[256] = "";
    EXPECT_EQ(viFindRsrc(manager_, "GPIB?*", nullptr, nullptr, name), VI_ERROR_RSRC_NFOUND);
    EXPECT_EQ(viFindRsrc(manager_, "[", nullptr, nullptr, name), VI_ERROR_INV_EXPR);
    EXPECT_EQ(viFindRsrc(manager_, nullptr, nullptr, nullptr, name), VI_ERROR_INV_EXPR);
    EXPECT_EQ(viFindRsrc(manager_, "?*", nullptr, nullptr, nullptr), VI_ERROR_USER_BUF);
    EXPECT_EQ(viFindRsrc(OpenVirtual(), "?*", nullptr, nullptr, name), VI_ERROR_NSUP_OPER);
    EXPECT_EQ(viFindNext(manager_, name), VI_ERROR_NSUP_OPER);
}

TEST_F(FindTest, NamesAreTakenApartWithoutConnecting) {
    ViUInt16 type = 0;
    ViUInt16 number = 0;
    char resourceClass[256] = "";
    char full[256] = "";
    char alias[256] = "x";
    EXPECT_EQ(viParseRsrc(manager_, "tcpip2::nowhere.invalid::5025::socket", &type, &number),
              VI_SUCCESS);
    EXPECT_EQ(type, 6);
    EXPECT_EQ(number, 2);
    EXPECT_EQ(viParseRsrcEx(manager_, "tcpip2::nowhere.invalid::5025::socket", &type, &number,
                            resourceClass, full, alias),
              VI_SUCCESS);
    EXPECT_STREQ(resourceClass, "SOCKET");
    EXPECT_STREQ(full, "TCPIP2::nowhere.invalid::5025::SOCKET");
    EXPECT_STREQ(alias, "");
    EXPECT_EQ(viParseRsrcEx(manager_, "virtual::scripted::instr", &type, &number, resourceClass,
                            full, nullptr),
              VI_SUCCESS);
    EXPECT_STREQ(resourceClass, "INSTR");
    EXPECT_STREQ(full, "VIRTUAL::SCRIPTED::INSTR");
    EXPECT_EQ(number, 0);
}

TEST_F(FindTest, NamesThatCannotBeTakenApart) {
    ViUInt16 type = 0;
    ViUInt16 number = 0;
    EXPECT_EQ(viParseRsrc(manager_, "", &type, &number), VI_ERROR_INV_RSRC_NAME);
    EXPECT_EQ(viParseRsrc(manager_, nullptr, &type, &number), VI_ERROR_INV_RSRC_NAME);
    EXPECT_EQ(viParseRsrc(manager_, "VIRTUAL::NOSUCH1::INSTR", &type, &number),
              VI_ERROR_RSRC_NFOUND);
    EXPECT_EQ(viParseRsrc(manager_, "VIRTUAL::INSTR", nullptr, &number), VI_ERROR_USER_BUF);
    EXPECT_EQ(viParseRsrc(manager_, "VIRTUAL::INSTR", &type, nullptr), VI_ERROR_USER_BUF);
    EXPECT_EQ(viParseRsrc(VI_NULL, "VIRTUAL::INSTR", &type, &number), VI_ERROR_INV_OBJECT);
}

}  // namespace visa_provider::testing
