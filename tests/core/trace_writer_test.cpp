#include "core/trace_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "core/shared_folder.h"
#include "tests/core/fake_trace_host.h"

namespace kestrion {
namespace {

using test::FakeTraceHost;
using test::kDocumentBegin;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr HRESULT kUnexpected = static_cast<HRESULT>(0x8000FFFFU);
constexpr HRESULT kDiskFull = static_cast<HRESULT>(0x80070070U);

// What is in the file behind the beginning of the document.
std::string Body(const FakeTraceHost& host) {
    EXPECT_TRUE(host.Content().starts_with(kDocumentBegin));
    return host.Content().substr(kDocumentBegin.size());
}

class TraceWriterTest : public testing::Test {
  protected:
    // The name of the file that is opened for the settings made.
    std::string NameOpened() {
        EXPECT_EQ(writer_.Start(), S_OK);
        return host_.paths.back();
    }
    // The line of the stylesheet; empty without one.
    std::string StylesheetLine() {
        EXPECT_EQ(writer_.Start(), S_OK);
        const std::string& content = host_.Content();
        const auto from = content.find("<?xml-stylesheet");
        return from == std::string::npos ? ""
                                         : content.substr(from, content.find("\r\n", from) - from);
    }

    FakeTraceHost host_;
    TraceWriter writer_{host_};
};

TEST_F(TraceWriterTest, HasItsDefaults) {
    EXPECT_EQ(writer_.traceName, "");
    EXPECT_EQ(writer_.identifier, "");
    EXPECT_EQ(writer_.transformName, "");
    EXPECT_FALSE(writer_.closing);
    EXPECT_EQ(writer_.StartTime(), 0);
    EXPECT_EQ(writer_.LastSaveTime(), 0);
    EXPECT_EQ(writer_.RunState(), TraceRunState::kStopped);
    EXPECT_FALSE(writer_.enabled);
    EXPECT_EQ(writer_.sizeMax, 1000000);
    EXPECT_FALSE(writer_.traceArrays);
    EXPECT_EQ(writer_.arraySizeMax, 10);
    EXPECT_EQ(writer_.saveInterval, 1);
}

TEST_F(TraceWriterTest, ANameWithoutAFolderIsInTheCurrentDirectory) {
    writer_.traceName = "run";
    EXPECT_EQ(NameOpened(), "/data/run/run.xml");
}

TEST_F(TraceWriterTest, AnAbsoluteNameStaysAsItIs) {
    writer_.traceName = "/tmp/../logs/a.xml";
    EXPECT_EQ(NameOpened(), "/tmp/../logs/a.xml");
}

TEST_F(TraceWriterTest, AnAbsoluteNameGetsTheExtensionToo) {
    writer_.traceName = "/logs/a";
    EXPECT_EQ(NameOpened(), "/logs/a.xml");
}

TEST_F(TraceWriterTest, ARelativeNameLosesItsDots) {
    writer_.traceName = "../other/./a.xml";
    EXPECT_EQ(NameOpened(), "/data/other/a.xml");
}

TEST_F(TraceWriterTest, TheExtensionIsComparedInAnyCase) {
    writer_.traceName = "RUN.XML";
    EXPECT_EQ(NameOpened(), "/data/run/RUN.XML");
}

TEST_F(TraceWriterTest, AnotherExtensionGetsTheRightOneAdded) {
    writer_.traceName = "run.txt";
    EXPECT_EQ(NameOpened(), "/data/run/run.txt.xml");
}

TEST_F(TraceWriterTest, ADotInAFolderIsNoExtension) {
    writer_.traceName = "a.xml/run";
    EXPECT_EQ(NameOpened(), "/data/run/a.xml/run.xml");
}

TEST_F(TraceWriterTest, WithoutANameTheIdentifierAndTheTimeMakeOne) {
    writer_.identifier = "Kestrion";
    EXPECT_EQ(NameOpened(), "/data/run/Kestrion_2024-03-09_14-05-07.xml");
}

TEST_F(TraceWriterTest, StartBeginsTheDocument) {
    EXPECT_EQ(writer_.Start(), S_OK);
    EXPECT_EQ(host_.Content(), "<?xml version=\"1.0\"?>\r\n<TraceRecords>\r\n");
    EXPECT_EQ(writer_.RunState(), TraceRunState::kRunning);
    EXPECT_EQ(writer_.StartTime(), 1000);
}

TEST_F(TraceWriterTest, StartWhileRunningFailsAndOpensNoSecondFile) {
    ASSERT_EQ(writer_.Start(), S_OK);
    EXPECT_EQ(writer_.Start(), kUnexpected);
    EXPECT_EQ(host_.paths.size(), 1U);
    EXPECT_TRUE(host_.File().isOpen);
    EXPECT_EQ(writer_.RunState(), TraceRunState::kRunning);
}

TEST_F(TraceWriterTest, AStartWhileRunningMakesTheNextRecordTheLastOfItsFile) {
    ASSERT_EQ(writer_.Start(), S_OK);
    EXPECT_FALSE(writer_.closing);
    EXPECT_EQ(writer_.Start(), kUnexpected);
    EXPECT_TRUE(writer_.closing);
    EXPECT_EQ(writer_.Stop(), S_OK);
    EXPECT_FALSE(writer_.closing);
    EXPECT_EQ(writer_.Start(), S_OK);
    EXPECT_FALSE(writer_.closing);
}

TEST_F(TraceWriterTest, AFileThatCannotBeOpenedFailsTheStart) {
    host_.createStatus = static_cast<HRESULT>(0x80070005U);
    EXPECT_EQ(writer_.Start(), static_cast<HRESULT>(0x80070005U));
    EXPECT_EQ(writer_.RunState(), TraceRunState::kStopped);
    EXPECT_FALSE(writer_.IsOpen());
    host_.createStatus = S_OK;
    EXPECT_EQ(writer_.Start(), S_OK);
}

TEST_F(TraceWriterTest, AFileThatCannotBeBegunFailsTheStartAndIsClosed) {
    host_.firstWriteStatus = kDiskFull;
    EXPECT_EQ(writer_.Start(), kDiskFull);
    EXPECT_EQ(writer_.RunState(), TraceRunState::kStopped);
    EXPECT_FALSE(host_.File().isOpen);
}

TEST_F(TraceWriterTest, WithoutAStylesheetThereIsNoLineForIt) {
    EXPECT_EQ(StylesheetLine(), "");
}

TEST_F(TraceWriterTest, TheDefaultStylesheetIsBesideTheTraceFile) {
    writer_.traceName = "/logs/a.xml";
    host_.existing = {"/logs/trace.xslt"};
    EXPECT_EQ(StylesheetLine(),
              R"(<?xml-stylesheet type="text/xsl" href="file:\\/logs/trace.xslt"?>)");
    EXPECT_TRUE(host_.Content().starts_with("<?xml version=\"1.0\"?>\r\n<?xml-stylesheet"));
    EXPECT_TRUE(host_.Content().ends_with("\"?>\r\n<TraceRecords>\r\n"));
}

TEST_F(TraceWriterTest, ABareStylesheetNameIsBesideTheTraceFile) {
    writer_.traceName = "/logs/a.xml";
    writer_.transformName = "mine";
    host_.existing = {"/logs/mine.xslt"};
    EXPECT_EQ(StylesheetLine(),
              R"(<?xml-stylesheet type="text/xsl" href="file:\\/logs/mine.xslt"?>)");
}

TEST_F(TraceWriterTest, AStylesheetNameWithAPathStandsForItself) {
    writer_.traceName = "/logs/a.xml";
    writer_.transformName = "/styles/mine.XSLT";
    host_.existing = {"/styles/mine.XSLT"};
    EXPECT_EQ(StylesheetLine(),
              R"(<?xml-stylesheet type="text/xsl" href="file:\\/styles/mine.XSLT"?>)");
}

TEST_F(TraceWriterTest, TheSharedFolderHasTheDefaultStylesheet) {
    host_.sharedFolder = "/usr/share/driver";
    host_.existing = {"/usr/share/driver/trace.xslt"};
    EXPECT_EQ(StylesheetLine(),
              R"(<?xml-stylesheet type="text/xsl" href="file:\\/usr/share/driver/trace.xslt"?>)");
}

TEST_F(TraceWriterTest, AStylesheetThatIsNowhereLeavesNoLine) {
    host_.sharedFolder = "/usr/share/driver";
    writer_.transformName = "mine";
    host_.existing = {"/usr/share/driver/mine.xslt"};
    EXPECT_EQ(StylesheetLine(), "");
}

TEST_F(TraceWriterTest, AStylesheetThatIsMissingIsReplacedByTheDefaultOne) {
    host_.sharedFolder = "/usr/share/driver";
    writer_.transformName = "/styles/mine.xslt";
    host_.existing = {"/usr/share/driver/trace.xslt"};
    EXPECT_EQ(StylesheetLine(),
              R"(<?xml-stylesheet type="text/xsl" href="file:\\/usr/share/driver/trace.xslt"?>)");
}

TEST_F(TraceWriterTest, AStylesheetBesideTheTraceFileIsPreferred) {
    writer_.traceName = "/logs/a.xml";
    host_.sharedFolder = "/usr/share/driver";
    host_.existing = {"/logs/trace.xslt", "/usr/share/driver/trace.xslt"};
    EXPECT_EQ(StylesheetLine(),
              R"(<?xml-stylesheet type="text/xsl" href="file:\\/logs/trace.xslt"?>)");
}

TEST_F(TraceWriterTest, ARelativeStylesheetPathStandsForItself) {
    writer_.traceName = "/logs/a.xml";
    writer_.transformName = "styles/mine";
    host_.existing = {"styles/mine.xslt"};
    EXPECT_EQ(StylesheetLine(),
              R"(<?xml-stylesheet type="text/xsl" href="file:\\styles/mine.xslt"?>)");
}

TEST_F(TraceWriterTest, AnotherExtensionOfTheStylesheetGetsTheRightOneAdded) {
    writer_.traceName = "/logs/a.xml";
    writer_.transformName = "mine.xsl";
    host_.existing = {"/logs/mine.xsl", "/logs/mine.xsl.xslt"};
    EXPECT_EQ(StylesheetLine(),
              R"(<?xml-stylesheet type="text/xsl" href="file:\\/logs/mine.xsl.xslt"?>)");
}

TEST_F(TraceWriterTest, BlanksAndForeignLettersOfAStylesheetPathStayAsTheyAre) {
    writer_.transformName = "/my styles/\u00C4\u03A9.xslt";
    host_.existing = {"/my styles/\u00C4\u03A9.xslt"};
    EXPECT_EQ(StylesheetLine(),
              "<?xml-stylesheet type=\"text/xsl\" "
              "href=\"file:\\\\/my styles/\u00C4\u03A9.xslt\"?>");
}

TEST_F(TraceWriterTest, AStylesheetPathCannotBreakOutOfItsLine) {
    writer_.transformName = "/a\"?>&<b.xslt";
    host_.existing = {"/a\"?>&<b.xslt"};
    EXPECT_EQ(StylesheetLine(),
              R"(<?xml-stylesheet type="text/xsl" href="file:\\/a&quot;?&gt;&amp;&lt;b.xslt"?>)");
}

TEST_F(TraceWriterTest, AnElementWithoutChildrenIsOneTag) {
    ASSERT_EQ(writer_.Start(), S_OK);
    writer_.OpenElement("Method");
    writer_.WriteAttribute("Name", "get_Mode");
    writer_.WriteAttribute("Interface", "IKestrionAcquisition");
    writer_.CloseElement();
    EXPECT_EQ(writer_.Commit(), S_OK);
    EXPECT_EQ(Body(host_), "<Method Name=\"get_Mode\" Interface=\"IKestrionAcquisition\"/>\r\n");
}

TEST_F(TraceWriterTest, ElementsAreIndentedByATabForEachLevel) {
    ASSERT_EQ(writer_.Start(), S_OK);
    writer_.OpenElement("A");
    writer_.OpenElement("B");
    writer_.OpenElement("C");
    writer_.CloseElement();
    writer_.OpenElement("D");
    writer_.CloseElement();
    writer_.CloseElement();
    writer_.CloseElement();
    EXPECT_EQ(writer_.Commit(), S_OK);
    EXPECT_EQ(Body(host_),
              "<A>\r\n"
              "\t<B>\r\n"
              "\t\t<C/>\r\n"
              "\t\t<D/>\r\n"
              "\t</B>\r\n"
              "</A>\r\n");
}

TEST_F(TraceWriterTest, AnAttributeBehindTheStartTagIsIgnored) {
    ASSERT_EQ(writer_.Start(), S_OK);
    writer_.WriteAttribute("Lost", "1");
    writer_.OpenElement("A");
    writer_.OpenElement("B");
    writer_.CloseElement();
    writer_.WriteAttribute("Lost", "2");
    writer_.CloseElement();
    EXPECT_EQ(writer_.Commit(), S_OK);
    EXPECT_EQ(Body(host_), "<A>\r\n\t<B/>\r\n</A>\r\n");
}

TEST_F(TraceWriterTest, ClosingMoreThanWasOpenedDoesNothing) {
    ASSERT_EQ(writer_.Start(), S_OK);
    writer_.CloseElement();
    EXPECT_EQ(writer_.Commit(), S_OK);
    EXPECT_EQ(Body(host_), "");
}

TEST_F(TraceWriterTest, WithoutAFileElementsGoNowhere) {
    writer_.OpenElement("A");
    writer_.WriteAttribute("B", "c");
    writer_.CloseElement();
    EXPECT_EQ(writer_.Commit(), S_OK);
    ASSERT_EQ(writer_.Start(), S_OK);
    EXPECT_EQ(Body(host_), "");
}

class AttributeTextTest : public TraceWriterTest {
  protected:
    template <typename Text>
    std::string Written(Text text) {
        EXPECT_EQ(writer_.Start(), S_OK);
        writer_.OpenElement("A");
        writer_.WriteAttribute("v", text);
        writer_.CloseElement();
        EXPECT_EQ(writer_.Commit(), S_OK);
        const std::string body = Body(host_);
        EXPECT_TRUE(body.starts_with("<A v=\"") && body.ends_with("\"/>\r\n")) << body;
        EXPECT_EQ(writer_.Stop(), S_OK);
        return body.substr(6, body.size() - 11);
    }
};

TEST_F(AttributeTextTest, MarkupIsEscaped) {
    EXPECT_EQ(Written("a<b>&\"c'"), "a&lt;b&gt;&amp;&quot;c'");
    EXPECT_EQ(Written("]]>"), "]]&gt;");
    EXPECT_EQ(Written("&amp;"), "&amp;amp;");
}

TEST_F(AttributeTextTest, WhiteSpaceSurvivesAReader) {
    EXPECT_EQ(Written(" a\tb\nc\r"), " a&#9;b&#10;c&#13;");
}

TEST_F(AttributeTextTest, ControlCharactersThatXmlForbidsAreReplaced) {
    EXPECT_EQ(Written(std::u16string_view(u"a\0b\x1F\x0B", 5)), "a\uFFFDb\uFFFD\uFFFD");
    EXPECT_EQ(Written(u"\uFFFE\uFFFF"), "\uFFFD\uFFFD");
    EXPECT_EQ(Written(u"\x7F"), "\x7F");
}

TEST_F(AttributeTextTest, UnpairedSurrogatesAreReplaced) {
    constexpr char16_t kText[] = {u'a', 0xD800, u'b', 0xDC00, 0xD83D, 0xDE00, 0xD83D};
    EXPECT_EQ(Written(std::u16string_view(kText, 7)), "a\uFFFDb\uFFFD\U0001F600\uFFFD");
}

TEST_F(AttributeTextTest, MalformedUtf8IsReplaced) {
    EXPECT_EQ(Written(std::string_view("\xC3\xA4\xFFz")), "\u00E4\uFFFDz");
}

TEST_F(AttributeTextTest, AnEmptyTextIsAnEmptyValue) {
    EXPECT_EQ(Written(""), "");
}

TEST_F(TraceWriterTest, StopEndsTheDocumentAndClosesTheFile) {
    ASSERT_EQ(writer_.Start(), S_OK);
    writer_.closing = true;
    EXPECT_EQ(writer_.Stop(), S_OK);
    EXPECT_EQ(Body(host_), "</TraceRecords>\r\n");
    EXPECT_FALSE(host_.File().isOpen);
    EXPECT_FALSE(writer_.closing);
    EXPECT_EQ(writer_.RunState(), TraceRunState::kStopped);
}

TEST_F(TraceWriterTest, StopClosesWhatIsOpen) {
    ASSERT_EQ(writer_.Start(), S_OK);
    writer_.OpenElement("A");
    writer_.OpenElement("B");
    EXPECT_EQ(writer_.Stop(), S_OK);
    EXPECT_EQ(Body(host_), "<A>\r\n\t<B/>\r\n</A>\r\n</TraceRecords>\r\n");
}

TEST_F(TraceWriterTest, StopWithoutAFileResetsTheState) {
    writer_.closing = true;
    EXPECT_EQ(writer_.Stop(), S_OK);
    EXPECT_FALSE(writer_.closing);
    EXPECT_THAT(host_.paths, IsEmpty());
}

TEST_F(TraceWriterTest, AFileIsFinishedWithTheWriter) {
    {
        TraceWriter writer(host_);
        ASSERT_EQ(writer.Start(), S_OK);
    }
    EXPECT_EQ(Body(host_), "</TraceRecords>\r\n");
    EXPECT_FALSE(host_.File().isOpen);
}

TEST_F(TraceWriterTest, AStoppedWriterStartsAgainInANewFile) {
    writer_.traceName = "a";
    ASSERT_EQ(writer_.Start(), S_OK);
    ASSERT_EQ(writer_.Stop(), S_OK);
    writer_.traceName = "b";
    EXPECT_EQ(writer_.Start(), S_OK);
    EXPECT_THAT(host_.paths, ElementsAre("/data/run/a.xml", "/data/run/b.xml"));
}

TEST_F(TraceWriterTest, SwitchingOffWhileRunningStopsWithoutClosing) {
    ASSERT_EQ(writer_.SetEnabled(true), S_OK);
    ASSERT_EQ(writer_.Start(), S_OK);
    EXPECT_EQ(writer_.SetEnabled(false), S_OK);
    EXPECT_FALSE(writer_.enabled);
    EXPECT_EQ(writer_.RunState(), TraceRunState::kStopped);
    EXPECT_TRUE(host_.File().isOpen);
}

TEST_F(TraceWriterTest, SwitchingOffWhatHasStoppedIsAFailure) {
    ASSERT_EQ(writer_.SetEnabled(true), S_OK);
    EXPECT_EQ(writer_.SetEnabled(false), kUnexpected);
    EXPECT_TRUE(writer_.enabled);
}

TEST_F(TraceWriterTest, SwitchingOffWhatIsOffIsNone) {
    EXPECT_EQ(writer_.SetEnabled(false), S_OK);
    EXPECT_FALSE(writer_.enabled);
}

TEST_F(TraceWriterTest, StartFinishesTheFileOfATraceThatWasSwitchedOff) {
    ASSERT_EQ(writer_.SetEnabled(true), S_OK);
    ASSERT_EQ(writer_.Start(), S_OK);
    ASSERT_EQ(writer_.SetEnabled(false), S_OK);
    EXPECT_EQ(writer_.Start(), S_OK);
    ASSERT_EQ(host_.files.size(), 2U);
    EXPECT_TRUE(host_.files[0]->content.ends_with("</TraceRecords>\r\n"));
    EXPECT_FALSE(host_.files[0]->isOpen);
    EXPECT_TRUE(host_.files[1]->isOpen);
}

class SaveCheckTest : public TraceWriterTest {
  protected:
    void SetUp() override {
        writer_.enabled = true;
        ASSERT_EQ(writer_.Start(), S_OK);
    }
    // Flushes made by one check at that time.
    int FlushesAt(std::int64_t seconds) {
        host_.now.secondsSinceEpoch = seconds;
        const int before = host_.File().flushes;
        EXPECT_EQ(writer_.CheckSave(), S_OK);
        return host_.File().flushes - before;
    }
};

TEST_F(SaveCheckTest, AnIntervalOfZeroSavesEachTime) {
    writer_.saveInterval = 0;
    EXPECT_EQ(FlushesAt(36000), 1);
    EXPECT_EQ(FlushesAt(36000), 1);
    EXPECT_EQ(FlushesAt(36001), 1);
}

TEST_F(SaveCheckTest, SavesWhenTheMinutesHavePassed) {
    writer_.saveInterval = 2;
    EXPECT_EQ(FlushesAt(36000 + 120), 1) << "two minutes of an hour since the epoch";
    EXPECT_EQ(writer_.LastSaveTime(), 36120);
    EXPECT_EQ(FlushesAt(36120 + 119), 0);
    EXPECT_EQ(writer_.LastSaveTime(), 36120);
    EXPECT_EQ(FlushesAt(36120 + 120), 1);
    EXPECT_EQ(writer_.LastSaveTime(), 36240);
}

TEST_F(SaveCheckTest, TheMinutesWrapAtEachFullHour) {
    writer_.saveInterval = 2;
    EXPECT_EQ(FlushesAt(36000), 0) << "ten hours since the epoch, and no minute";
    EXPECT_EQ(FlushesAt(36120), 1);
    EXPECT_EQ(FlushesAt(36120 + 3600), 0);
    EXPECT_EQ(FlushesAt(36120 + 3600 + 119), 0);
    EXPECT_EQ(FlushesAt(36120 + 3600 + 120), 1);
}

TEST_F(SaveCheckTest, AnIntervalOfAnHourOrMoreNeverSaves) {
    for (const int interval : {60, 61, 120}) {
        writer_.saveInterval = interval;
        for (int minute = 0; minute < 200; ++minute) {
            EXPECT_EQ(FlushesAt(36000 + minute * 60), 0) << interval << " " << minute;
        }
    }
}

TEST_F(SaveCheckTest, AnIntervalOfFiftyNineMinutesSavesInTheLastOneOfTheHour) {
    writer_.saveInterval = 59;
    EXPECT_EQ(FlushesAt(36000 + 58 * 60 + 59), 0);
    EXPECT_EQ(FlushesAt(36000 + 59 * 60), 1);
}

TEST_F(SaveCheckTest, AFailedFlushIsReportedAndCountsAsASave) {
    writer_.saveInterval = 0;
    writer_.sizeMax = 1;
    host_.File().flushStatus = kDiskFull;
    host_.now.secondsSinceEpoch = 36000;
    EXPECT_EQ(writer_.CheckSave(), kDiskFull);
    EXPECT_EQ(writer_.LastSaveTime(), 36000);
    EXPECT_EQ(writer_.RunState(), TraceRunState::kRunning) << "the size isn't tested";
}

TEST_F(SaveCheckTest, AFailedSizeIsReported) {
    writer_.saveInterval = 0;
    host_.File().sizeStatus = kDiskFull;
    EXPECT_EQ(writer_.CheckSave(), kDiskFull);
    EXPECT_EQ(writer_.RunState(), TraceRunState::kRunning);
}

TEST_F(SaveCheckTest, AFileThatExceedsTheLimitStopsTheTraceAtASave) {
    writer_.saveInterval = 0;
    host_.File().extraSize = 1000000 - host_.Content().size();
    EXPECT_EQ(FlushesAt(36000), 1);
    EXPECT_EQ(writer_.RunState(), TraceRunState::kRunning) << "just the limit";
    ++host_.File().extraSize;
    writer_.saveInterval = 30;
    EXPECT_EQ(FlushesAt(36000), 0);
    EXPECT_EQ(writer_.RunState(), TraceRunState::kRunning) << "no save, no test";
    writer_.saveInterval = 0;
    EXPECT_EQ(FlushesAt(36000), 1);
    EXPECT_EQ(writer_.RunState(), TraceRunState::kSizeLimit);
    EXPECT_TRUE(host_.File().isOpen);
}

TEST_F(SaveCheckTest, ANegativeLimitIsExceededAtOnce) {
    writer_.saveInterval = 0;
    writer_.sizeMax = -1;
    EXPECT_EQ(writer_.CheckSave(), S_OK);
    EXPECT_EQ(writer_.RunState(), TraceRunState::kSizeLimit);
}

TEST_F(SaveCheckTest, ExceedingTheLimitWhileSwitchedOffIsAFailure) {
    writer_.saveInterval = 0;
    writer_.sizeMax = 1;
    writer_.enabled = false;
    EXPECT_EQ(writer_.CheckSave(), kUnexpected);
    EXPECT_EQ(writer_.RunState(), TraceRunState::kRunning);
}

TEST_F(SaveCheckTest, StopLeavesTheSizeLimit) {
    writer_.saveInterval = 0;
    writer_.sizeMax = 1;
    ASSERT_EQ(writer_.CheckSave(), S_OK);
    EXPECT_EQ(writer_.Start(), kUnexpected);
    EXPECT_EQ(writer_.Stop(), S_OK);
    EXPECT_EQ(writer_.Start(), S_OK);
}

TEST_F(SaveCheckTest, WithoutAFileThereIsNothingToSave) {
    ASSERT_EQ(writer_.Stop(), S_OK);
    writer_.saveInterval = 0;
    EXPECT_EQ(writer_.CheckSave(), S_OK);
    EXPECT_EQ(writer_.LastSaveTime(), 0);
}

TEST_F(TraceWriterTest, AWriteFailureIsToldAndDoesNotSpoilTheNextWrite) {
    ASSERT_EQ(writer_.Start(), S_OK);
    host_.File().writeStatus = kDiskFull;
    writer_.OpenElement("A");
    writer_.CloseElement();
    EXPECT_EQ(writer_.Commit(), kDiskFull);
    host_.File().writeStatus = S_OK;
    writer_.OpenElement("B");
    writer_.CloseElement();
    EXPECT_EQ(writer_.Commit(), S_OK);
    EXPECT_EQ(Body(host_), "<B/>\r\n");
}

TEST_F(TraceWriterTest, MeasuresTimeByTheCounterAndItsFrequency) {
    EXPECT_EQ(writer_.SecondsBetween(5000, 5250), 0.25);
}

TEST(SystemTraceTest, WritesARealFileThatOthersCanReadMeanwhile) {
    const std::string begin =
        "<?xml version=\"1.0\"?>\r\n"
        "<?xml-stylesheet type=\"text/xsl\" href=\"file:\\\\" +
        SharedFolder("trace.xslt") +
        "/trace.xslt\"?>\r\n"
        "<TraceRecords>\r\n";
    const std::string path = testing::TempDir() + "trace_writer_test.xml";
    {
        std::ofstream(path) << "something older and longer than the beginning of a document";
        TraceWriter writer;
        writer.traceName = path;
        ASSERT_EQ(writer.Start(), S_OK);
        writer.OpenElement("A");
        writer.CloseElement();
        ASSERT_EQ(writer.Commit(), S_OK);
        writer.saveInterval = 0;
        EXPECT_EQ(writer.CheckSave(), S_OK);
        std::ostringstream meanwhile;
        meanwhile << std::ifstream(path, std::ios::binary).rdbuf();
        EXPECT_EQ(meanwhile.str(), begin + "<A/>\r\n");
    }
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    EXPECT_EQ(text.str(), begin + "<A/>\r\n</TraceRecords>\r\n");
    std::filesystem::remove(path);
}

TEST(SystemTraceTest, AFolderThatIsNotThereFailsTheStart) {
    TraceWriter writer;
    writer.traceName = testing::TempDir() + "no_such_folder/a.xml";
    EXPECT_EQ(writer.Start(), static_cast<HRESULT>(0x80070003U));
}

TEST(SystemTraceTest, TheCounterGoesForwardAtItsFrequency) {
    const TraceHost& host = SystemTraceHost();
    EXPECT_GT(host.CounterFrequency(), 0U);
    const std::uint64_t first = host.Counter();
    EXPECT_GE(host.Counter(), first);
}

}  // namespace
}  // namespace kestrion
