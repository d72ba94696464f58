// Locks hold between the processes of this computer (VPP-4.3, rule 3.6.8).
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>
#include <thread>

#include "tests/visa/session_fixture.h"

namespace visa_provider::testing {
namespace {

constexpr ViStatus kNotOpened = -1;

// A lock_client of our own, which ends with the object.
class Client {
  public:
    explicit Client(const std::string& resource) {
        int toClient[2];
        int fromClient[2];
        if (pipe2(toClient, O_CLOEXEC) != 0 || pipe2(fromClient, O_CLOEXEC) != 0) {
            return;
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, toClient[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, fromClient[1], STDOUT_FILENO);
        std::string program = KESTRION_LOCK_CLIENT;
        std::string argument = resource;
        char* arguments[] = {program.data(), argument.data(), nullptr};
        if (posix_spawn(&process_, program.c_str(), &actions, nullptr, arguments, environ) != 0) {
            process_ = 0;
        }
        posix_spawn_file_actions_destroy(&actions);
        close(toClient[0]);
        close(fromClient[1]);
        to_.reset(fdopen(toClient[1], "w"));
        from_.reset(fdopen(fromClient[0], "r"));
        EXPECT_EQ(ReadLine(), "open\n");
    }
    ~Client() {
        to_.reset();  // the client ends with its input
        Reap();
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    ViStatus Do(const std::string& line) {
        if (!to_ || std::fputs((line + "\n").c_str(), to_.get()) < 0 ||
            std::fflush(to_.get()) != 0) {
            return kNotOpened;
        }
        const std::string answer = ReadLine();
        return answer.empty() ? kNotOpened : static_cast<ViStatus>(std::stoul(answer, nullptr, 16));
    }

    // Ends it as a crash would.
    void Kill() {
        ASSERT_GT(process_, 0);
        ASSERT_EQ(kill(process_, SIGKILL), 0);
        Reap();
    }

  private:
    struct CloseFile {
        void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
    };

    std::string ReadLine() {
        char line[64] = "";
        return from_ && std::fgets(line, sizeof(line), from_.get()) ? line : "";
    }
    void Reap() {
        if (process_ > 0) {
            int status = 0;
            static_cast<void>(waitpid(process_, &status, 0));
            process_ = 0;
        }
    }

    pid_t process_ = 0;
    std::unique_ptr<std::FILE, CloseFile> to_;
    std::unique_ptr<std::FILE, CloseFile> from_;
};

class LockProcessTest : public VisaTest {
  protected:
    void SetUp() override {
        VisaTest::SetUp();
        server_ = std::make_unique<LoopbackServer>(AnswerAll);
        session_ = Open(server_->Resource());
        client_ = std::make_unique<Client>(server_->Resource());
    }
    void TearDown() override {
        client_.reset();
        VisaTest::TearDown();
        server_.reset();
    }
    [[nodiscard]] ViAccessMode State() const {
        return Get<ViAccessMode>(session_, VI_ATTR_RSRC_LOCK_STATE);
    }
    ViStatus Lock(ViAccessMode type, ViUInt32 timeout, const char* key = nullptr) const {
        return viLock(session_, type, timeout, key, nullptr);
    }

    std::unique_ptr<LoopbackServer> server_;
    std::unique_ptr<Client> client_;
    ViSession session_ = VI_NULL;
};

TEST_F(LockProcessTest, ExclusiveLockKeepsTheOtherProcessOut) {
    EXPECT_EQ(client_->Do("write"), VI_SUCCESS);
    ASSERT_EQ(Lock(VI_EXCLUSIVE_LOCK, 0), VI_SUCCESS);
    EXPECT_EQ(client_->Do("write"), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(client_->Do("state"), 1);
    EXPECT_EQ(client_->Do("exclusive 0"), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(client_->Do("exclusive 20"), VI_ERROR_TMO);
    EXPECT_EQ(client_->Do("shared k 0"), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(client_->Do("unlock"), VI_ERROR_SESN_NLOCKED);
    ASSERT_EQ(viUnlock(session_), VI_SUCCESS);
    EXPECT_EQ(client_->Do("write"), VI_SUCCESS);
    EXPECT_EQ(client_->Do("exclusive 0"), VI_SUCCESS);
    EXPECT_EQ(Write(session_, "A\n"), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(State(), VI_EXCLUSIVE_LOCK);
    EXPECT_EQ(client_->Do("unlock"), VI_SUCCESS);
    EXPECT_EQ(State(), VI_NO_LOCK);
}

TEST_F(LockProcessTest, SharedLockIsSharedWithItsKey) {
    ASSERT_EQ(Lock(VI_SHARED_LOCK, 0, "bench 7"), VI_SUCCESS);
    EXPECT_EQ(client_->Do("write"), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(client_->Do("state"), 2);
    EXPECT_EQ(client_->Do("shared other 0"), VI_ERROR_INV_ACCESS_KEY);
    ASSERT_EQ(viUnlock(session_), VI_SUCCESS);

    EXPECT_EQ(client_->Do("shared k 0"), VI_SUCCESS);
    EXPECT_EQ(Write(session_, "A\n"), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(Lock(VI_SHARED_LOCK, 0, "k"), VI_SUCCESS);
    EXPECT_EQ(Write(session_, "A\n"), VI_SUCCESS);
    EXPECT_EQ(client_->Do("write"), VI_SUCCESS);
    // One of the sharers may have it alone for a while.
    EXPECT_EQ(Lock(VI_EXCLUSIVE_LOCK, 0), VI_SUCCESS);
    EXPECT_EQ(client_->Do("write"), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(client_->Do("exclusive 0"), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(viUnlock(session_), VI_SUCCESS_NESTED_SHARED);
    EXPECT_EQ(client_->Do("write"), VI_SUCCESS);
}

TEST_F(LockProcessTest, WaitEndsWhenTheOtherProcessGivesTheLockBack) {
    ASSERT_EQ(client_->Do("exclusive 0"), VI_SUCCESS);
    EXPECT_EQ(Lock(VI_EXCLUSIVE_LOCK, 20), VI_ERROR_TMO);
    std::thread other([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_EQ(client_->Do("unlock"), VI_SUCCESS);
    });
    EXPECT_EQ(Lock(VI_EXCLUSIVE_LOCK, 10000), VI_SUCCESS);
    other.join();
}

TEST_F(LockProcessTest, LockOfAProcessThatCrashedIsGone) {
    ASSERT_EQ(client_->Do("exclusive 0"), VI_SUCCESS);
    EXPECT_EQ(Write(session_, "A\n"), VI_ERROR_RSRC_LOCKED);
    client_->Kill();
    EXPECT_EQ(Write(session_, "A\n"), VI_SUCCESS);
    EXPECT_EQ(Lock(VI_SHARED_LOCK, 0, "k"), VI_SUCCESS);
}

TEST_F(LockProcessTest, SessionThatIsClosedWithItsProcessGivesItsLockBack) {
    ASSERT_EQ(client_->Do("shared k 0"), VI_SUCCESS);
    EXPECT_EQ(State(), VI_SHARED_LOCK);
    client_.reset();
    EXPECT_EQ(State(), VI_NO_LOCK);
    EXPECT_EQ(Lock(VI_EXCLUSIVE_LOCK, 0), VI_SUCCESS);
}

}  // namespace
}  // namespace visa_provider::testing
