// Every property that can be written, over each link: what is put is got back, and nothing else
// happens. What is legal stands in the property_cases_*.cpp, typed by hand; which properties there
// are comes from the model.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <set>

#include "tests/system/property_cases.h"
#include "tests/system/property_subject.h"

namespace kestrion {
namespace {

using testing::IsEmpty;

PropertyValue AsNumber(PropertyKind kind, double number) {
    return kind == PropertyKind::kLong ? PropertyValue(static_cast<LONG>(number))
                                       : PropertyValue(number);
}

// The next number that a command can tell from this one.
PropertyValue Beyond(PropertyKind kind, double limit, int direction) {
    // Some members send six digits.
    const double step = kind == PropertyKind::kLong ? 1.0 : std::max(std::abs(limit) * 1e-4, 1e-15);
    return AsNumber(kind, limit + direction * step);
}

// The legal values of a property of few, in order.
std::vector<PropertyValue> FewValues(const Property& property) {
    if (property.kind == PropertyKind::kBool) {
        return {false, true};
    }
    return {property.values.begin(), property.values.end()};
}

void RunEachValue(const PropertyCase& row, PropertySubject& subject) {
    for (const PropertyValue& value : FewValues(subject.GetProperty())) {
        const bool* flag = std::get_if<bool>(&value);
        const LONG number = flag != nullptr ? LONG{*flag} : std::get<LONG>(value);
        const Refusal* refusal = row.FindRefusal(number);
        if (refusal == nullptr) {
            subject.RoundTrip(value);
        } else {
            subject.Refuse(value, refusal->status, 0);
        }
    }
    if (subject.GetProperty().kind == PropertyKind::kBool) {
        subject.RoundTrip(false);
    }
}

void RunNumber(const PropertyCase& row, PropertySubject& subject) {
    const PropertyKind kind = subject.GetProperty().kind;
    subject.RoundTrip(AsNumber(kind, row.limits.low));
    subject.Refuse(Beyond(kind, row.limits.low, -1), S_OK, kOutOfRange);
    subject.RoundTrip(AsNumber(kind, row.limits.high));
    subject.Refuse(Beyond(kind, row.limits.high, 1), S_OK, row.limits.errorAbove);
}

// A text goes out in quotes as it is, and is read as the instrument answers: in quotes, up to the
// first blank.
void RunText(const PropertyCase& row, PropertySubject& subject) {
    for (const std::string text : {"", "x", "it's", ";,:?*", "\xC3\xA9\xC2\xB5"}) {
        subject.PutWith(text, S_OK, 0);
        subject.ExpectToRead('"' + text + '"');
    }
    subject.PutWith(std::string("two words"), S_OK, 0);
    subject.ExpectToRead(std::string("\"two"));
    // A quote within ends the text, so that what follows isn't a parameter any more.
    subject.Refuse(std::string("5\" disk"), S_OK, kInvalidString);
    const std::string longest(row.longest, 'w');
    subject.PutWith(longest, S_OK, 0);
    subject.ExpectToRead('"' + longest + '"');
    subject.Refuse(std::string(row.longest + 1, 'v'), S_OK, kOutOfRange);
}

void RunWord(const PropertyCase& row, PropertySubject& subject) {
    for (const std::string_view word : row.words) {
        subject.RoundTrip(std::string(word));
    }
    subject.Refuse(std::string("NOSUCHWORD"), S_OK, kIllegalParameter);
}

void RunWritten(const PropertyCase& row, PropertySubject& subject, PropertySubject& companion) {
    const auto values = subject.GetProperty().values;
    ASSERT_LE(values.size(), row.effects.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        const Refusal* refusal = row.FindRefusal(values[i]);
        if (refusal == nullptr) {
            subject.PutWith(values[i], S_OK, 0);
            companion.ExpectToRead(row.effects[i]);
            continue;
        }
        const PropertyValue before = companion.Read();
        subject.PutWith(values[i], refusal->status, 0);
        companion.ExpectToRead(before);
    }
}

// What there is to put of a property whose value doesn't matter.
PropertyValue AnyValue(PropertyKind kind) {
    switch (kind) {
        case PropertyKind::kDouble:
            return 1.0;
        case PropertyKind::kBool:
            return true;
        case PropertyKind::kText:
            return std::string("CH1");
        default:
            return LONG{1};
    }
}

// One property of the interface under test.
struct Place {
    ScopeClient& client;
    IUnknown& object;
    const PropertyInterface& interface;
    const Property& property;
    LONG index;
};

const Property* FindProperty(const PropertyInterface& interface, std::string_view name) {
    const auto found = std::ranges::find(interface.properties, name, &Property::name);
    return found == interface.properties.end() ? nullptr : &*found;
}

void RunAbsent(const PropertyCase& row, const Place& place) {
    PropertyValue value = AnyValue(place.property.kind);
    EXPECT_EQ(place.property.put(place.object, place.index, value), row.absent);
    EXPECT_EQ(place.property.get(place.object, place.index, value), row.absent);
    TakeErrorText();
}

void Run(const PropertyCase& row, const Place& place) {
    PropertySubject subject(place.client, place.object, place.property, place.index);
    switch (row.kind) {
        case PropertyCase::Kind::kEachValue:
            return RunEachValue(row, subject);
        case PropertyCase::Kind::kNumber:
            return RunNumber(row, subject);
        case PropertyCase::Kind::kText:
            return RunText(row, subject);
        case PropertyCase::Kind::kWord:
            return RunWord(row, subject);
        case PropertyCase::Kind::kAbsent:
            return RunAbsent(row, place);
        case PropertyCase::Kind::kWritten: {
            const Property* other = FindProperty(place.interface, row.companion);
            ASSERT_NE(other, nullptr) << row.companion;
            PropertySubject companion(place.client, place.object, *other, place.index);
            return RunWritten(row, subject, companion);
        }
    }
}

bool FitsKind(const PropertyCase& row, const Property& property) {
    const PropertyKind kind = property.kind;
    if (property.put == nullptr ||
        (property.get == nullptr) != (row.kind == PropertyCase::Kind::kWritten)) {
        return false;
    }
    switch (row.kind) {
        case PropertyCase::Kind::kEachValue:
            return kind == PropertyKind::kBool || kind == PropertyKind::kEnum;
        case PropertyCase::Kind::kNumber:
            return kind == PropertyKind::kLong || kind == PropertyKind::kDouble;
        case PropertyCase::Kind::kText:
        case PropertyCase::Kind::kWord:
            return kind == PropertyKind::kText;
        case PropertyCase::Kind::kWritten:
            return kind == PropertyKind::kEnum;
        case PropertyCase::Kind::kAbsent:
            return true;
    }
    return false;
}

std::vector<LONG> IndexesOf(const Property& property) {
    if (!property.hasIndex) {
        return {0};
    }
    EXPECT_FALSE(property.indexes.empty()) << property.name;
    return {property.indexes.begin(), property.indexes.end()};
}

void RunOn(ScopeClient& client, IUnknown& object, const PropertyInterface& interface,
           const PropertyCase& row) {
    const Property* property = FindProperty(interface, row.name.substr(interface.name.size() + 1));
    ASSERT_NE(property, nullptr);
    ASSERT_TRUE(FitsKind(row, *property));
    for (const LONG index : IndexesOf(*property)) {
        SCOPED_TRACE("index " + std::to_string(index));
        Run(row, {client, object, interface, *property, index});
    }
}

// Instances keep their values apart.
void KeepApart(ScopeClient& client, const PropertyInterface& interface, const PropertyCase& row) {
    const Property& property = *FindProperty(interface, row.name.substr(interface.name.size() + 1));
    std::vector<PropertyValue> two;
    if (row.kind == PropertyCase::Kind::kNumber) {
        two = {AsNumber(property.kind, row.limits.low), AsNumber(property.kind, row.limits.high)};
    } else if (row.kind == PropertyCase::Kind::kText) {
        two = {std::string("one"), std::string("two")};
    } else if (row.kind == PropertyCase::Kind::kEachValue && row.refusalCount == 0) {
        two = {FewValues(property).front(), FewValues(property).back()};
    } else {
        return;
    }
    const auto first = interface.node->find(*client.scope, interface.node->first);
    const auto last = interface.node->find(*client.scope, interface.node->last);
    PropertySubject one(client, *first, property, 0);
    PropertySubject other(client, *last, property, 0);
    one.PutWith(two[0], S_OK, 0);
    const PropertyValue kept = one.Read();
    other.PutWith(two[1], S_OK, 0);
    one.ExpectToRead(kept);
    EXPECT_FALSE(AreEqual(other.Read(), kept));
}

void RunCase(ScopeClient& client, const PropertyInterface& interface, const PropertyCase& row) {
    SCOPED_TRACE(std::string(row.name));
    if (row.prepare != nullptr) {
        row.prepare(client);
    }
    if (interface.node == nullptr) {
        return RunOn(client, *client.scope, interface, row);
    }
    for (const std::string_view name : {interface.node->first, interface.node->last}) {
        SCOPED_TRACE(std::string(name));
        const auto object = interface.node->find(*client.scope, name);
        ASSERT_TRUE(object);
        RunOn(client, *object, interface, row);
    }
    KeepApart(client, interface, row);
}

std::vector<PropertyCase> CasesOf(std::string_view interface) {
    auto rows = AllPropertyCases();
    std::erase_if(rows, [interface](const PropertyCase& row) {
        return row.name.substr(0, row.name.find('.')) != interface;
    });
    return rows;
}

struct Link {
    bool socket;
    std::string interface;
};

std::vector<Link> AllLinks() {
    std::vector<Link> links;
    for (const bool socket : {false, true}) {
        for (const PropertyInterface& interface : AllPropertyInterfaces()) {
            links.push_back({socket, std::string(interface.name)});
        }
    }
    return links;
}

class PropertyRoundTrip : public testing::TestWithParam<Link> {
  protected:
    void RunModel(std::string_view model, const PropertyInterface& interface,
                  const std::vector<PropertyCase>& rows) {
        SCOPED_TRACE(std::string(model));
        std::unique_ptr<virtual_scope::SocketServer> server;
        if (GetParam().socket) {
            server = Serve({}, std::string(model));
        }
        ScopeClient client;
        ASSERT_EQ(client.Open(server ? server->ResourceName()
                                     : "VIRTUAL::" + std::string(model) + "::INSTR"),
                  S_OK)
            << TakeErrorText();
        for (const PropertyCase& row : rows) {
            if (row.IsFor(model)) {
                RunCase(client, interface, row);
            }
        }
    }
};

TEST_P(PropertyRoundTrip, WhatIsPutIsGotBack) {
    const auto interfaces = AllPropertyInterfaces();
    const auto interface =
        std::ranges::find(interfaces, GetParam().interface, &PropertyInterface::name);
    ASSERT_NE(interface, interfaces.end());
    const auto rows = CasesOf(interface->name);
    std::set<std::string_view> models;
    for (const PropertyCase& row : rows) {
        models.insert(row.models.begin(), row.models.end());
    }
    models.erase("");
    for (const std::string_view model : models) {
        RunModel(model, *interface, rows);
    }
}

// How a failed test tells its parameter.
void PrintTo(const Link& link, std::ostream* out) {
    *out << (link.socket ? "over a socket: " : "inside of the process: ") << link.interface;
}

INSTANTIATE_TEST_SUITE_P(Links, PropertyRoundTrip, testing::ValuesIn(AllLinks()),
                         [](const auto& link) {
                             return (link.param.socket ? "Socket_" : "Virtual_") +
                                    link.param.interface;
                         });

std::set<std::string> NamesOfModel() {
    std::set<std::string> names;
    for (const PropertyInterface& interface : AllPropertyInterfaces()) {
        for (const Property& property : interface.properties) {
            names.insert(std::string(interface.name) + '.' + std::string(property.name));
        }
    }
    return names;
}

// Those that are tested in a way of their own, and where.
const std::set<std::string> kApart = {
    "IDirectIo.Timeout",               // PropertyApart.TheTimeoutIsTheSessions
    "IIviScopeAcquisition.StartTime",  // PropertyApart.TheStartTimeIsReadFromThePreamble
};

TEST(PropertyCases, EveryPropertyOfTheModelHasOne) {
    std::set<std::string> cases = kApart;
    for (const PropertyCase& row : AllPropertyCases()) {
        cases.insert(std::string(row.name));
    }
    std::vector<std::string> missing;
    std::ranges::set_difference(NamesOfModel(), cases, std::back_inserter(missing));
    EXPECT_THAT(missing, IsEmpty());
    std::vector<std::string> unknown;
    std::ranges::set_difference(cases, NamesOfModel(), std::back_inserter(unknown));
    EXPECT_THAT(unknown, IsEmpty());
}

}  // namespace

std::vector<PropertyCase> AllPropertyCases() {
    std::vector<PropertyCase> all;
    for (auto* part :
         {DriverCases, AcquisitionCases, ChannelCases, MeasurementCases, TriggerCases,
          LogicTriggerCases, PulseTriggerCases, SerialTriggerCases, ClassTriggerCases}) {
        const auto rows = part();
        all.insert(all.end(), rows.begin(), rows.end());
    }
    return all;
}

}  // namespace kestrion
