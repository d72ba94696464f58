#include "cli/scope_client.h"

#include <fmt/format.h>
#include <kestrion/kestrion.h>

#include <string_view>
#include <utility>

#include "cli/ascii.h"
#include "cli/failure.h"

namespace kestrion::cli {
namespace {

// The driver's messages begin with its name, as the program's own lines do.
constexpr std::string_view kDriverPrefix = "Kestrion: ";

// The error object's text with plain line ends.
std::string TextOfError(HRESULT status) {
    ComPtr<IErrorInfo> error;
    BstrPtr description;
    if (GetErrorInfo(0, error.Out()) != S_OK || Failed(error->GetDescription(description.Out())) ||
        description.View().empty()) {
        return fmt::format("The driver failed with status 0x{:08X} and said nothing more.",
                           static_cast<std::uint32_t>(status));
    }
    std::string text = description.Utf8();
    std::erase(text, '\r');
    return text.starts_with(kDriverPrefix) ? text.substr(kDriverPrefix.size()) : text;
}

void Check(HRESULT status) {
    if (Failed(status)) {
        throw Failure(TextOfError(status));
    }
}

// What a property of `object` holds; the property may be one of an interface that its own extends.
template <typename Interface, typename Base, typename Object>
ComPtr<Interface> Child(Object& object, HRESULT (Base::*getter)(Interface**)) {
    ComPtr<Interface> child;
    Check((object.*getter)(child.Out()));
    return child;
}

template <typename Base, typename Object>
std::string Text(Object& object, HRESULT (Base::*getter)(BSTR*)) {
    BstrPtr text;
    Check((object.*getter)(text.Out()));
    return text.Utf8();
}

template <typename Base, typename Object>
bool Flag(Object& object, HRESULT (Base::*getter)(VARIANT_BOOL*)) {
    VARIANT_BOOL value = VARIANT_FALSE;
    Check((object.*getter)(&value));
    return value != VARIANT_FALSE;
}

template <typename Base, typename Object>
int Number(Object& object, HRESULT (Base::*getter)(LONG*)) {
    LONG value = 0;
    Check((object.*getter)(&value));
    return value;
}

// The instrument answers with a string literal.
std::string Unquoted(std::string_view literal) {
    std::string_view text = TrimBlanks(literal);
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        text = text.substr(1, text.size() - 2);
    }
    return std::string(text);
}

KestrionSourceEnum SourceValue(Source source) {
    constexpr int kSourcesOfAKind = 4;
    return static_cast<KestrionSourceEnum>(static_cast<int>(source.kind) * kSourcesOfAKind +
                                           source.number - 1);
}

class DriverClient : public ScopeClient {
  public:
    DriverClient() {
        if (Failed(CreateKestrion(scope_.Out()))) {
            throw Failure("The driver could not be started.");
        }
    }
    DriverClient(const DriverClient&) = delete;
    DriverClient& operator=(const DriverClient&) = delete;
    ~DriverClient() override {
        if (open_) {
            // Nobody is left to be told that closing failed.
            (void)scope_->Close();
        }
    }

    void Open(const std::string& resource, const std::string& options) override {
        Check(scope_->Initialize(Bstr(resource).Get(), VARIANT_FALSE, VARIANT_FALSE,
                                 Bstr(options).Get()));
        open_ = true;
        simulated_ = Flag(*Operation(), &IIviDriverOperation::get_Simulate);
    }

    void SetTimeout(std::int32_t milliseconds) override {
        if (!simulated_) {
            Check(DirectIo()->put_Timeout(milliseconds));
        }
    }

    InstrumentIdentity Instrument() override {
        const auto identity = Identity();
        return {Text(*identity, &IIviDriverIdentity::get_InstrumentManufacturer),
                Text(*identity, &IIviDriverIdentity::get_InstrumentModel), SerialNumber(),
                Text(*identity, &IIviDriverIdentity::get_InstrumentFirmwareRevision),
                Text(*DirectIo(), &IDirectIo::get_InstrumentFamily)};
    }

    DriverIdentity Driver() override {
        const auto identity = Identity();
        return {Text(*identity, &IIviComponentIdentity::get_Description),
                Text(*identity, &IIviComponentIdentity::get_Identifier),
                Text(*identity, &IIviComponentIdentity::get_Revision),
                Text(*identity, &IIviComponentIdentity::get_Vendor),
                Number(*identity, &IIviDriverIdentity::get_SpecificationMajorVersion),
                Number(*identity, &IIviDriverIdentity::get_SpecificationMinorVersion)};
    }

    ConnectionDetails Connection() override {
        const auto operation = Operation();
        ConnectionDetails details;
        details.resource = Text(*operation, &IIviDriverOperation::get_IoResourceDescriptor);
        details.logicalName = Text(*operation, &IIviDriverOperation::get_LogicalName);
        details.driverSetup = Text(*operation, &IIviDriverOperation::get_DriverSetup);
        details.simulated = simulated_;
        using Getter = HRESULT (IIviDriverOperation::*)(VARIANT_BOOL*);
        const std::pair<const char*, Getter> flags[] = {
            {"Cache", &IIviDriverOperation::get_Cache},
            {"Interchange check", &IIviDriverOperation::get_InterchangeCheck},
            {"Query instrument status", &IIviDriverOperation::get_QueryInstrumentStatus},
            {"Range check", &IIviDriverOperation::get_RangeCheck},
            {"Record coercions", &IIviDriverOperation::get_RecordCoercions},
            {"Simulate", &IIviDriverOperation::get_Simulate}};
        for (const auto& [name, getter] : flags) {
            details.options.push_back({name, Flag(*operation, getter)});
        }
        if (!simulated_) {
            details.visaLibrary = Text(*DirectIo(), &IDirectIo::get_VisaLibrary);
            details.visaLibraryReason = Text(*DirectIo(), &IDirectIo::get_VisaLibraryReason);
        }
        return details;
    }

    StoreDetails Store() override {
        return {Text(*DirectIo(), &IDirectIo::get_ConfigurationStore),
                Text(*DirectIo(), &IDirectIo::get_ConfigurationStoreReason)};
    }

    std::vector<std::string> SupportedModels() override {
        const std::string list =
            Text(*Identity(), &IIviDriverIdentity::get_SupportedInstrumentModels);
        std::vector<std::string> models;
        for (std::string_view model : Split(list, ',')) {
            models.emplace_back(TrimBlanks(model));
        }
        return models;
    }

    bool IsOn(Source source) override {
        if (source.kind == SourceKind::kChannel) {
            return Flag(*Channel(source), &IKestrionChannel::get_DisplayState);
        }
        return TrimBlanks(Query(fmt::format("SELECT:{}?", SourceName(source)))) == "1";
    }

    void TurnOn(Source source) override {
        if (source.kind == SourceKind::kChannel) {
            Check(Channel(source)->put_DisplayState(VARIANT_TRUE));
        } else {
            Write(fmt::format("SELECT:{} 1", SourceName(source)));
        }
    }

    void SetRecordLength(std::int32_t points) override {
        Check(Child(*scope_, &IKestrion::get_Horizontal)->put_RecordLength(points));
    }
    void SelectSingleSequence() override { Check(Acquisition()->put_SingleSequence(VARIANT_TRUE)); }
    void StartSingleSequence() override { Check(Acquisition()->StartSingleSequence()); }
    bool IsAcquiring() override { return Flag(*Acquisition(), &IKestrionAcquisition::get_State); }

    Waveform Fetch(Source source) override {
        Record record;
        Check(Transfer()->FetchWaveform(SourceValue(source), record.points.Out(), &record.initialX,
                                        &record.xIncrement));
        return MakeWaveform(source, std::move(record));
    }

    Waveform Read(Source source, std::int32_t maxTimeMilliseconds) override {
        Record record;
        Check(Transfer()->ReadWaveform(SourceValue(source), maxTimeMilliseconds,
                                       record.points.Out(), &record.initialX, &record.xIncrement));
        return MakeWaveform(source, std::move(record));
    }

    MeasuredValue Measure(Source source, const Measurement& what) override {
        const auto immediate = Child(*Child(*scope_, &IKestrion::get_Measurements),
                                     &IKestrionMeasurements::get_Immediate);
        Check(immediate->Configure(SourceValue(source),
                                   static_cast<KestrionMeasurementTypeEnum>(what.type)));
        double value = 0;
        Check(immediate->get_Value(&value));
        const std::string units = Text(*immediate, &IKestrionMeasurementImmediate::get_Units);
        return {ValueOrNone(value), Unquoted(units)};
    }

    void Write(const std::string& command) override {
        Check(DirectIo()->WriteString(Bstr(command).Get()));
    }

    std::string Query(const std::string& command) override {
        BstrPtr response;
        Check(DirectIo()->QueryString(Bstr(command).Get(), response.Out()));
        return response.Utf8();
    }

    InstrumentError NextError() override {
        LONG code = 0;
        BstrPtr text;
        Check(Child(*scope_, &IIviDriver::get_Utility)->ErrorQuery(&code, text.Out()));
        return {code, text.Utf8()};
    }

  private:
    struct Record {
        SafeArrayPtr points;
        double initialX = 0;
        double xIncrement = 0;
    };

    static BstrPtr Bstr(const std::string& text) { return BstrPtr(std::string_view(text)); }

    // The points stay where the driver has put them.
    static Waveform MakeWaveform(Source source, Record record) {
        // The driver takes it for no failure if a model lacks the source.
        if (!record.points) {
            throw Failure(
                fmt::format("The instrument gave no waveform for {}.", SourceName(source)),
                "Models with two channels have no sources numbered 3 and 4.");
        }
        const auto storage = std::make_shared<const SafeArrayPtr>(std::move(record.points));
        return {SourceName(source), storage->Elements<double>(), record.initialX, record.xIncrement,
                storage};
    }

    // The third field of the identity answer, which the object model has no member for.
    std::string SerialNumber() {
        if (simulated_) {
            return {};
        }
        const std::string answer = Query("*IDN?");
        const std::vector<std::string_view> fields = Split(answer, ',');
        return fields.size() > 2 ? std::string(TrimBlanks(fields[2])) : "";
    }

    ComPtr<IIviDriverIdentity> Identity() { return Child(*scope_, &IIviDriver::get_Identity); }
    ComPtr<IIviDriverOperation> Operation() {
        return Child(*scope_, &IIviDriver::get_DriverOperation);
    }
    ComPtr<IKestrionAcquisition> Acquisition() {
        return Child(*scope_, &IKestrion::get_Acquisition);
    }
    ComPtr<IKestrionWaveformTransfer> Transfer() {
        return Child(*scope_, &IKestrion::get_WaveformTransfer);
    }
    ComPtr<IDirectIo> DirectIo() {
        auto found = kestrion::Query<IDirectIo>(scope_.Get());
        if (!found) {
            throw Failure("The driver offers no direct input and output.");
        }
        return found;
    }
    ComPtr<IKestrionChannel> Channel(Source source) {
        ComPtr<IKestrionChannel> channel;
        const BstrPtr name(std::string_view(fmt::format("Channel{}", source.number)));
        Check(Child(*scope_, &IKestrion::get_Channels)->get_Item(name.Get(), channel.Out()));
        return channel;
    }

    ComPtr<IKestrion> scope_;
    bool open_ = false;
    bool simulated_ = false;
};

}  // namespace

std::unique_ptr<ScopeClient> MakeScopeClient() {
    return std::make_unique<DriverClient>();
}

std::string DriverVersion() {
    return Version();
}

}  // namespace kestrion::cli
