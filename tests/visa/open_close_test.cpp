#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <map>
#include <set>
#include <thread>

#include "tests/visa/session_fixture.h"
#include "visa/host_lookup.h"
#include "visa/tcp_socket.h"

namespace visa_provider::testing {

using OpenTest = VisaTest;

ViStatus OpenStatus(ViSession manager, const char* name, ViAccessMode mode = VI_NO_LOCK,
                    ViUInt32 timeout = 5000) {
    ViSession session = 99;
    const ViStatus status = viOpen(manager, name, mode, timeout, &session);
    if (status < 0) {
        EXPECT_EQ(session, VI_NULL) << name;
    } else {
        EXPECT_EQ(viClose(session), VI_SUCCESS);
    }
    return status;
}

std::string SocketName(std::uint16_t port) {
    return "TCPIP::127.0.0.1::" + std::to_string(port) + "::SOCKET";
}

TEST_F(OpenTest, ManagersAreUnique) {
    std::set<ViSession> managers{manager_};
    for (int i = 0; i < 3; ++i) {
        ViSession manager = VI_NULL;
        ASSERT_EQ(viOpenDefaultRM(&manager), VI_SUCCESS);
        EXPECT_TRUE(managers.insert(manager).second);
    }
    managers.erase(manager_);
    for (const auto manager : managers) {
        EXPECT_EQ(viClose(manager), VI_SUCCESS);
    }
}

TEST_F(OpenTest, MissingOutputLocationsAreRefused) {
    EXPECT_EQ(viOpenDefaultRM(nullptr), VI_ERROR_USER_BUF);
    EXPECT_EQ(viOpen(manager_, "VIRTUAL::INSTR", 0, 0, nullptr), VI_ERROR_USER_BUF);
    EXPECT_EQ(OpenStatus(manager_, nullptr), VI_ERROR_INV_RSRC_NAME);
}

TEST_F(OpenTest, WrongNamesAreRefused) {
    EXPECT_EQ(OpenStatus(manager_, ""), VI_ERROR_INV_RSRC_NAME);
    EXPECT_EQ(OpenStatus(manager_, "TCPIP::host::port::SOCKET"), VI_ERROR_INV_RSRC_NAME);
    EXPECT_EQ(OpenStatus(manager_, "GPIB0::1::INSTR"), VI_ERROR_RSRC_NFOUND);
}

TEST_F(OpenTest, UnknownModelIsNotFound) {
    EXPECT_EQ(OpenStatus(manager_, "VIRTUAL::NOSUCH1::INSTR"), VI_ERROR_RSRC_NFOUND);
}

TEST_F(OpenTest, DefaultModel) {
    const auto session = Open("VIRTUAL::INSTR");
    EXPECT_EQ(GetText(session, VI_ATTR_RSRC_NAME), "VIRTUAL::PL7254C::INSTR");
}

TEST_F(OpenTest, ModelInAnyCase) {
    const auto session = Open("virtual::mixed-case::instr");
    EXPECT_EQ(GetText(session, VI_ATTR_RSRC_NAME), "VIRTUAL::Mixed-Case::INSTR");
}

TEST_F(OpenTest, EachSessionHasAnInstrumentOfItsOwn) {
    const auto one = OpenVirtual();
    const auto other = OpenVirtual();
    ASSERT_EQ(Write(one, "ECHO one\n"), VI_SUCCESS);
    ASSERT_EQ(Write(other, "ECHO other\n"), VI_SUCCESS);
    EXPECT_EQ(Read(one, 100).bytes, "one\n");
    EXPECT_EQ(Read(other, 100).bytes, "other\n");
}

TEST_F(OpenTest, InstrumentIsGoneWithItsSession) {
    const auto session = OpenVirtual();
    const auto record = LastRecord();
    EXPECT_TRUE(record->isAlive);
    EXPECT_EQ(viClose(session), VI_SUCCESS);
    EXPECT_FALSE(record->isAlive);
}

TEST_F(OpenTest, NobodyListens) {
    EXPECT_EQ(OpenStatus(manager_, SocketName(FreePort()).c_str()), VI_ERROR_RSRC_NFOUND);
}

TEST_F(OpenTest, HostNameIsLookedUp) {
    LoopbackServer server(AnswerAll);
    const auto session = Open("TCPIP::localhost::" + std::to_string(server.Port()) + "::SOCKET");
    ASSERT_EQ(Write(session, "*IDN?\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session, 14).bytes, "KESTRION,TEST\n");
    EXPECT_EQ(GetText(session, VI_ATTR_TCPIP_HOSTNAME), "localhost");
    EXPECT_EQ(GetText(session, VI_ATTR_TCPIP_ADDR), "127.0.0.1");
}

TEST_F(OpenTest, HostNameThatCannotBeOneIsNotFound) {
    // A label of a host name has at most 63 characters (RFC 1035), so nobody need be asked.
    const std::string name = "TCPIP::" + std::string(64, 'a') + ".invalid::5025::SOCKET";
    EXPECT_EQ(OpenStatus(manager_, name.c_str(), VI_NO_LOCK, 5000), VI_ERROR_RSRC_NFOUND);
}

TEST_F(OpenTest, UnknownHostEndsWithinTheTimeOut) {
    // Where no name server answers, the time-out passes first.
    EXPECT_THAT(OpenStatus(manager_, "TCPIP::unknown.invalid::5025::SOCKET", VI_NO_LOCK, 500),
                ::testing::AnyOf(VI_ERROR_RSRC_NFOUND, VI_ERROR_TMO));
}

TEST_F(OpenTest, SearchForAHostThatTakesTooLongIsATimeOut) {
    const auto gate = std::make_shared<std::promise<void>>();
    const auto isOver = std::make_shared<std::promise<void>>();
    const auto result = SearchWithin(
        [gate, isOver] {
            gate->get_future().wait();
            isOver->set_value();
            return HostSearchResult{VI_SUCCESS, {{1, 2, 3}}};
        },
        Clock::now() + std::chrono::milliseconds(10));
    EXPECT_EQ(result.status, VI_ERROR_TMO);
    EXPECT_TRUE(result.addresses.empty());
    gate->set_value();
    isOver->get_future().wait();
}

TEST_F(OpenTest, SearchForAHostGivesItsResult) {
    const auto search = [](ViStatus status) {
        return SearchWithin(
            [status] {
                return HostSearchResult{status, {{1, 2, 3}}};
            },
            std::nullopt);
    };
    EXPECT_EQ(search(VI_SUCCESS).status, VI_SUCCESS);
    EXPECT_EQ(search(VI_SUCCESS).addresses, (std::vector<SocketAddress>{{1, 2, 3}}));
    EXPECT_EQ(search(VI_ERROR_RSRC_NFOUND).status, VI_ERROR_RSRC_NFOUND);
}

TEST_F(OpenTest, SearchThatThrowsIsAFailure) {
    EXPECT_EQ(
        SearchWithin([]() -> HostSearchResult { throw std::bad_alloc(); }, std::nullopt).status,
        VI_ERROR_ALLOC);
}

TEST_F(OpenTest, ConnectionThatIsNotAnsweredIsATimeOut) {
    // A listener whose queue is full lets further connections wait.
    std::vector<std::unique_ptr<TcpSocket>> waiting;
    SilentListener listener;
    const auto deadline = [] { return Clock::now() + std::chrono::milliseconds(30); };
    ViStatus status = VI_SUCCESS;
    for (int i = 0; i < 16 && status == VI_SUCCESS; ++i) {
        waiting.emplace_back();
        status = TcpSocket::Connect("127.0.0.1", listener.Port(), deadline(), waiting.back());
    }
    EXPECT_EQ(status, VI_ERROR_TMO);
    EXPECT_EQ(OpenStatus(manager_, SocketName(listener.Port()).c_str(), VI_NO_LOCK, 30),
              VI_ERROR_TMO);
}

TEST_F(OpenTest, SixthVersionAddress) {
    EXPECT_EQ(
        OpenStatus(manager_, ("TCPIP::[::1]::" + std::to_string(FreePort()) + "::SOCKET").c_str()),
        VI_ERROR_RSRC_NFOUND);
}

TEST_F(OpenTest, AccessModes) {
    EXPECT_EQ(OpenStatus(manager_, "VIRTUAL::INSTR", VI_NO_LOCK), VI_SUCCESS);
    EXPECT_EQ(OpenStatus(manager_, "VIRTUAL::INSTR", VI_EXCLUSIVE_LOCK), VI_SUCCESS);
    EXPECT_EQ(OpenStatus(manager_, "VIRTUAL::INSTR", VI_LOAD_CONFIG), VI_WARN_CONFIG_NLOADED);
    EXPECT_EQ(OpenStatus(manager_, "VIRTUAL::INSTR", VI_EXCLUSIVE_LOCK | VI_LOAD_CONFIG),
              VI_WARN_CONFIG_NLOADED);
    EXPECT_EQ(OpenStatus(manager_, "VIRTUAL::INSTR", VI_SHARED_LOCK), VI_ERROR_INV_ACC_MODE);
    EXPECT_EQ(OpenStatus(manager_, "VIRTUAL::INSTR", 8), VI_ERROR_INV_ACC_MODE);
}

TEST_F(OpenTest, OpenTimeOutOfZeroIsTheDefault) {
    LoopbackServer server(AnswerAll);
    EXPECT_EQ(OpenStatus(manager_, server.Resource().c_str(), VI_NO_LOCK, 0), VI_SUCCESS);
}

TEST_F(OpenTest, OpenWithLockLocksTheResource) {
    LoopbackServer server(AnswerAll);
    ViSession owner = VI_NULL;
    ASSERT_EQ(viOpen(manager_, server.Resource().c_str(), VI_EXCLUSIVE_LOCK, 2000, &owner),
              VI_SUCCESS);
    const auto other = Open(server.Resource());
    EXPECT_EQ(Write(other, "*IDN?\n"), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(OpenStatus(manager_, server.Resource().c_str(), VI_EXCLUSIVE_LOCK, 20), VI_ERROR_TMO);
    EXPECT_EQ(viClose(owner), VI_SUCCESS);
    EXPECT_EQ(OpenStatus(manager_, server.Resource().c_str(), VI_EXCLUSIVE_LOCK, 20), VI_SUCCESS);
}

TEST_F(OpenTest, OpenOnASessionIsRefused) {
    EXPECT_EQ(OpenStatus(OpenVirtual(), "VIRTUAL::INSTR"), VI_ERROR_NSUP_OPER);
}

TEST_F(OpenTest, CloseOfNothingIsAWarning) {
    EXPECT_EQ(viClose(VI_NULL), VI_WARN_NULL_OBJECT);
}

TEST_F(OpenTest, CloseTwiceIsAnError) {
    const auto session = OpenVirtual();
    EXPECT_EQ(viClose(session), VI_SUCCESS);
    EXPECT_EQ(viClose(session), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(Write(session, "*IDN?\n"), VI_ERROR_INV_OBJECT);
}

TEST_F(OpenTest, ManagerClosesItsSessionsAndEventsAndNoOthers) {
    ViSession manager = VI_NULL;
    ASSERT_EQ(viOpenDefaultRM(&manager), VI_SUCCESS);
    ViSession session = VI_NULL;
    ASSERT_EQ(viOpen(manager, "VIRTUAL::SCRIPTED::INSTR", 0, 0, &session), VI_SUCCESS);
    const auto record = LastRecord();
    const auto other = OpenVirtual();
    ASSERT_EQ(viEnableEvent(session, VI_EVENT_SERVICE_REQ, VI_QUEUE, 0), VI_SUCCESS);
    ASSERT_EQ(Write(session, "SRQ\n"), VI_SUCCESS);
    ViEvent event = VI_NULL;
    ASSERT_EQ(viWaitOnEvent(session, VI_EVENT_SERVICE_REQ, 0, nullptr, &event), VI_SUCCESS);

    EXPECT_EQ(viClose(manager), VI_SUCCESS);
    EXPECT_FALSE(record->isAlive);
    EXPECT_EQ(viClose(session), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(viClose(event), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(viClose(other), VI_SUCCESS);
}

TEST_F(OpenTest, SessionsAreNotReusedSoon) {
    std::set<ViSession> seen;
    for (int i = 0; i < 100; ++i) {
        const auto session = OpenVirtual();
        EXPECT_TRUE(seen.insert(session).second);
        EXPECT_EQ(viClose(session), VI_SUCCESS);
    }
}

}  // namespace visa_provider::testing
