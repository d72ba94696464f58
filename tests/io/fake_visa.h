// A VISA library that is played from a script, for tests of everything above the function table.
//
//     FakeVisa fake;
//     fake.Expect("*IDN?\n").Reply("MAKER,MODEL,1,1.0\n");
//     ... open a session with fake.Table() ...
//     EXPECT_TRUE(fake.Finished());
//     EXPECT_THAT(fake.Calls(), ElementsAre("viOpenDefaultRM()", "viOpen(\"TCPIP::h::...", ...));
//
// A table holds plain functions, so session numbers lead back to the fake: several can live at the
// same time, on any threads, as long as each is opened through its own Table().
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "io/visa_api.h"

namespace kestrion {

class FakeVisa {
  public:
    // One exchange of the script: a message that has to come, and what is answered.
    class Exchange {
      public:
        // Queues a response. It ends with END behind its last byte.
        Exchange& Reply(std::string_view bytes);
        // Queues bytes that no END follows: a read gets them and then waits.
        Exchange& ReplyWithoutEnd(std::string_view bytes);
        // Puts a service request into the event queue.
        Exchange& RequestService();
        // Sets what viReadSTB answers from then on.
        Exchange& StatusByte(std::uint8_t value);

      private:
        friend class FakeVisa;
        struct Response {
            std::string bytes;
            bool end = true;
        };
        std::string command_;
        std::vector<Response> responses_;
        int serviceRequests_ = 0;
        int statusByte_ = -1;
    };

    FakeVisa();
    FakeVisa(const FakeVisa&) = delete;
    FakeVisa& operator=(const FakeVisa&) = delete;
    ~FakeVisa();

    // The functions. Only viOpenDefaultRM depends on the fake; it opens the one whose Table() was
    // asked for last on the calling thread.
    [[nodiscard]] const visa::FunctionTable& Table();

    // The next message that has to come, bytes and terminator. A message may come in several
    // writes; it is complete when a write with END on has come. While the script is in use, a
    // message that isn't the next one answers VI_ERROR_IO and shows in Mismatches(). Without any
    // script, every message is accepted.
    Exchange& Expect(std::string_view command);
    // Answers every message that isn't in the script: with a response, or with nothing if the text
    // is empty. Called with the fake's lock held.
    void AnswerWith(std::function<std::string(std::string_view message)> answer);
    // Queues a response that no command asks for.
    void Respond(std::string_view bytes, bool end = true);

    // What the instrument is.
    void SetInterfaceType(std::uint16_t type);
    void SetResourceName(std::string name);
    void SetResourceClass(std::string name);
    // Any attribute: the value and the bytes that VISA writes for it.
    void SetAttributeValue(visa::ViAttr attribute, std::uint64_t value, std::size_t bytes);
    [[nodiscard]] std::uint64_t AttributeValue(visa::ViAttr attribute) const;
    void SetStatusByte(std::uint8_t value);
    void RequestService();

    // What goes wrong. Calls are counted from 1, all functions but viStatusDesc together.
    void FailCall(int number, visa::ViStatus status);
    // Every call of this function, by its name, from now on; 0 ends it.
    void FailFunction(std::string function, visa::ViStatus status);
    void FailAttribute(visa::ViAttr attribute, visa::ViStatus status);
    // A read gives at most this many bytes, with a time-out's status behind them if `timeout`;
    // otherwise as if the count had been reached. 0 ends it.
    void LimitReads(std::size_t bytes, bool timeout);
    // A write takes at most this many bytes and succeeds. 0 ends it.
    void LimitWrites(std::size_t bytes);
    // The viRead or viWrite of this number moves at most so many bytes. It succeeds: a read as if
    // its count had been reached, with the rest for the next one.
    void ShortenCall(int number, std::size_t bytes);
    // It moves so many bytes and then times out; the rest of a response comes with the next read.
    void DelayCall(int number, std::size_t bytes);
    // From this call on the connection is lost for everything that needs the instrument.
    void CutLink(int number);
    void SetDescription(visa::ViStatus status, std::string text);
    // Called in every viRead and viWrite, without the fake's lock.
    void OnTransfer(std::function<void()> callback);

    // What came of it. Calls in their order, with arguments in text, such as
    // `viWrite("*RST\n")`, `viSetAttribute(TMO_VALUE, 5000)` and `viRead(4096)`; bytes beyond
    // printing are written \xNN. Calls may come on any thread.
    [[nodiscard]] std::vector<std::string> Calls() const;
    // The calls whose text begins with this.
    [[nodiscard]] std::vector<std::string> CallsOf(std::string_view prefix) const;
    void ForgetCalls();
    [[nodiscard]] int CallCount() const;
    // Everything that was written, message ends included.
    [[nodiscard]] std::string Written() const;
    // Whether each expected message came and nothing else did.
    [[nodiscard]] bool Finished() const;
    [[nodiscard]] std::vector<std::string> Mismatches() const;
    // Sessions and event contexts that weren't closed.
    [[nodiscard]] int OpenObjects() const;
    [[nodiscard]] bool Locked() const;

  private:
    friend class FakeVisaFunctions;

    struct Attribute {
        std::uint64_t value;
        std::size_t bytes;
    };

    // Transfers that a fault hits: how far they get.
    struct Limit {
        std::size_t bytes;
        bool timesOut;
    };

    visa::ViStatus Begin(std::string call, std::string_view function);
    // The limit of the read or write that runs. The caller holds the lock.
    [[nodiscard]] Limit LimitOf(bool read) const;
    void TakeMessage();

    mutable std::mutex mutex_;
    std::vector<std::string> calls_;
    std::vector<std::string> mismatches_;
    std::deque<Exchange> script_;
    bool scripted_ = false;
    std::string message_;
    std::string written_;
    std::deque<Exchange::Response> responses_;
    std::map<visa::ViAttr, Attribute> attributes_;
    std::map<visa::ViAttr, std::string> texts_;
    std::map<visa::ViStatus, std::string> descriptions_;
    std::map<std::string, visa::ViStatus, std::less<>> failingFunctions_;
    std::map<visa::ViAttr, visa::ViStatus> failingAttributes_;
    std::map<int, visa::ViStatus> failingCalls_;
    std::map<int, Limit> limitedCalls_;
    int cutAt_ = 0;
    int callCount_ = 0;
    std::size_t readLimit_ = 0;
    bool readLimitTimeout_ = false;
    std::size_t writeLimit_ = 0;
    int pendingEvents_ = 0;
    bool eventsEnabled_ = false;
    std::uint8_t statusByte_ = 0;
    int locks_ = 0;
    std::vector<visa::ViObject> open_;
    std::function<void()> onTransfer_;
    std::function<std::string(std::string_view)> answer_;
};

}  // namespace kestrion
