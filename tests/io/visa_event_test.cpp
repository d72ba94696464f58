// The session over VISA: events.
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "tests/io/session_fixture.h"

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class VisaEventTest : public OpenSessionFixture {};
class ClosedVisaEventTest : public SessionFixture {};

TEST_F(VisaEventTest, EventsAndMechanismsAreTranslatedByTheirTables) {
    const std::vector<std::pair<int, std::string>> events{
        {0, "0x3FFF2009"},  {1, "0xBFFF200A"},  {2, "0x3FFF200B"},  {4, "0xBFFF200E"},
        {5, "0x3FFF2012"},  {6, "0x3FFF2013"},  {7, "0x3FFF2014"},  {8, "0x3FFF201D"},
        {9, "0x3FFF201E"},  {10, "0x3FFF2020"}, {11, "0xBFFF2021"}, {12, "0x3FFF2036"},
        {13, "0x3FFF2037"}, {14, "0x3FFF7FFF"}};
    const std::vector<std::pair<int, std::string>> mechanisms{
        {0, "1"}, {1, "2"}, {2, "4"}, {3, "65535"}};
    IVisaCEventManager* manager = session.GetEventManager();
    for (const auto& [event, visaEvent] : events) {
        for (const auto& [mechanism, visaMechanism] : mechanisms) {
            fake.ForgetCalls();
            const auto ownEvent = static_cast<VisaEvent>(event);
            const auto ownMechanism = static_cast<VisaEventMechanism>(mechanism);
            const std::string both = visaEvent + ", " + visaMechanism;
            EXPECT_EQ(manager->EnableEvent(ownEvent, ownMechanism), S_OK);
            EXPECT_EQ(manager->DisableEvent(ownEvent, ownMechanism), S_OK);
            EXPECT_EQ(manager->DiscardEvents(ownEvent, ownMechanism), S_OK);
            EXPECT_THAT(fake.Calls(), ElementsAre("viEnableEvent(" + both + ", 0)",
                                                  "viDisableEvent(" + both + ")",
                                                  "viDiscardEvents(" + both + ")"));
        }
    }
}

TEST_F(VisaEventTest, UnknownEventsAndMechanismsAreRefused) {
    IVisaCEventManager* manager = session.GetEventManager();
    const auto noEvent = static_cast<VisaEvent>(3);
    const auto noMechanism = static_cast<VisaEventMechanism>(4);
    EXPECT_EQ(manager->EnableEvent(noEvent, VisaEventMechanism::kQueue), kIoErrorStatus);
    EXPECT_EQ(manager->DisableEvent(static_cast<VisaEvent>(15), VisaEventMechanism::kQueue),
              kIoErrorStatus);
    EXPECT_EQ(manager->DiscardEvents(VisaEvent::kTrigger, noMechanism), kIoErrorStatus);
    EXPECT_EQ(manager->InstallHandler(noEvent, nullptr, nullptr), kIoErrorStatus);
    EXPECT_EQ(manager->UninstallHandler(noEvent, nullptr, nullptr), kIoErrorStatus);
    EXPECT_EQ(manager->WaitOnEvent(noEvent, 0, nullptr, nullptr), kIoErrorStatus);
    EXPECT_THAT(reporter.reports, ElementsAre("ReportIoError(Unsupported VISA event type.)",
                                              "ReportIoError(Unsupported VISA event type.)",
                                              "ReportIoError(Unsupported VISA event mechanism.)",
                                              "ReportIoError(Unsupported VISA event type.)",
                                              "ReportIoError(Unsupported VISA event type.)",
                                              "ReportIoError(Unsupported VISA event type.)"));
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(VisaEventTest, WaitGivesTheEventInTheDriversNumbersAndItsContext) {
    IVisaCEventManager* manager = session.GetEventManager();
    ASSERT_EQ(manager->EnableEvent(VisaEvent::kServiceRequest, VisaEventMechanism::kQueue), S_OK);
    fake.RequestService();
    auto event = VisaEvent::kIoCompletion;
    visa::ViEvent context = 0;
    EXPECT_EQ(manager->WaitOnEvent(VisaEvent::kAllEnabled, 500, &event, &context), S_OK);
    EXPECT_EQ(event, VisaEvent::kServiceRequest);
    EXPECT_NE(context, 0U);
    EXPECT_EQ(session.GetFunctions().viClose(context), 0);
    EXPECT_EQ(fake.Calls().at(1), "viWaitOnEvent(0x3FFF7FFF, 500)");
    EXPECT_EQ(fake.Calls().at(2), "viClose(event)");
}

TEST_F(VisaEventTest, WaitThatTimesOutIsReported) {
    IVisaCEventManager* manager = session.GetEventManager();
    ASSERT_EQ(manager->EnableEvent(VisaEvent::kServiceRequest, VisaEventMechanism::kQueue), S_OK);
    EXPECT_EQ(manager->WaitOnEvent(VisaEvent::kServiceRequest, -1, nullptr, nullptr),
              kIoTimeoutStatus);
    EXPECT_EQ(fake.Calls().back(), "viWaitOnEvent(0x3FFF200B, 4294967295)");
    EXPECT_THAT(reporter.reports, ElementsAre("ReportIoTimeout()"));
}

visa::ViStatus ForeignEvent(visa::ViSession, visa::ViEventType, visa::ViUInt32,
                            visa::ViEventType* type, visa::ViEvent* context) {
    *type = 0x3FFF2FFF;
    *context = 4711;
    return 0;
}

TEST_F(ClosedVisaEventTest, EventOutsideOfTheTableIsRefusedAndItsContextStillGiven) {
    visa::FunctionTable table = fake.Table();
    table.viWaitOnEvent = ForeignEvent;
    CVisaCSession own([&table](std::string_view, const visa::FunctionTable*& functions) {
        functions = &table;
        return S_OK;
    });
    ASSERT_EQ(own.Initialize("x", &poller, &reporter, &formatter), S_OK);
    auto event = VisaEvent::kException;
    visa::ViEvent context = 0;
    EXPECT_EQ(own.WaitOnEvent(VisaEvent::kAllEnabled, 0, &event, &context), kIoErrorStatus);
    EXPECT_EQ(event, VisaEvent::kException);
    EXPECT_EQ(context, 4711U);
    EXPECT_THAT(reporter.reports, ElementsAre("ReportIoError(Unsupported VISA event type.)"));
}

TEST_F(VisaEventTest, HandlersAndQueueLengthReachVisa) {
    IVisaCEventManager* manager = session.GetEventManager();
    EXPECT_EQ(manager->InstallHandler(VisaEvent::kServiceRequest, nullptr, nullptr), S_OK);
    EXPECT_EQ(manager->UninstallHandler(VisaEvent::kServiceRequest, nullptr, nullptr), S_OK);
    EXPECT_EQ(manager->SetMaxQueueLength(20), S_OK);
    std::uint32_t length = 0;
    EXPECT_EQ(manager->GetMaxQueueLength(&length), S_OK);
    EXPECT_EQ(length, 20U);
    EXPECT_EQ(manager->GetMaxQueueLength(nullptr), kNullPointerStatus);
    EXPECT_THAT(
        fake.Calls(),
        ElementsAre("viInstallHandler(0x3FFF200B)", "viUninstallHandler(0x3FFF200B)",
                    "viSetAttribute(MAX_QUEUE_LENGTH, 20)", "viGetAttribute(MAX_QUEUE_LENGTH)"));
}

}  // namespace
}  // namespace kestrion
