// Groups of settings: what one method puts at once, another reads at once.
#pragma once

#include <string>
#include <tuple>
#include <type_traits>

#include "tests/system/scope_client.h"

namespace kestrion {

// Over the link inside of the process, and over a socket if the parameter is true.
class PropertyPairs : public testing::TestWithParam<bool> {
  protected:
    void Open(const std::string& model = "PL7254C") {
        if (GetParam()) {
            server_ = Serve({}, model);
        }
        ASSERT_EQ(client_.Open(server_ ? server_->ResourceName() : "VIRTUAL::" + model + "::INSTR"),
                  S_OK)
            << TakeErrorText();
    }
    void TearDown() override { ExpectInstrumentError(0); }

    void ExpectInstrumentError(LONG expected) {
        LONG code = -1;
        BstrPtr text;
        EXPECT_EQ(client_.As<IIviDriverUtility>()->ErrorQuery(&code, text.Out()), S_OK);
        EXPECT_EQ(code, expected) << text.Utf8();
    }

    template <typename Interface, typename... T>
    void PutAndRead(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*put)(T...),
                    HRESULT (STDMETHODCALLTYPE Interface::*read)(T*...),
                    std::type_identity_t<T>... values) {
        EXPECT_EQ((object.*put)(values...), S_OK) << TakeErrorText();
        ExpectInstrumentError(0);
        ExpectRead(object, read, values...);
    }

    template <typename Interface, typename... T>
    void ExpectRead(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*read)(T*...),
                    std::type_identity_t<T>... values) {
        std::tuple<T...> got{};
        EXPECT_EQ(std::apply([&](auto&... value) { return (object.*read)(&value...); }, got), S_OK)
            << TakeErrorText();
        EXPECT_EQ(got, std::tuple<T...>(values...));
    }

    // One property of the object.
    template <typename Interface, typename T>
    void ExpectGet(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*get)(T*),
                   std::type_identity_t<T> expected) {
        ExpectRead(object, get, expected);
    }

    std::unique_ptr<virtual_scope::SocketServer> server_;
    ScopeClient client_;
};

inline std::string LinkName(const testing::TestParamInfo<bool>& link) {
    return link.param ? "Socket" : "Virtual";
}

}  // namespace kestrion
