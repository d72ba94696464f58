// Enumeration values to instrument tokens and back: small two-way tables, keyed by instrument
// model, gathered in one converter. A token is whatever the command needs at its place, a word or
// more.
//
// Values are kept as 32 bits, an enumeration of 16 bits widened with its sign; the templates only
// give the type back. All of it is read-only once made, so that any thread may convert.
#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "tables/enum_data.h"
#include "tables/hash_map.h"
#include "tables/model_families.h"

namespace kestrion {

// What the format language needs of an enumeration. Texts are instrument bytes.
class IEnumConverter {
  public:
    virtual ~IEnumConverter() = default;

    // The token to send for `value` to an instrument of this model; the model is empty before one
    // is known. False, with `token` as it was, when there is none. An empty token is one.
    [[nodiscard]] virtual bool ToToken(std::string_view model, std::int32_t value,
                                       std::string& token) const = 0;
    // The value of a response: white space around it doesn't count, case does. False, with `value`
    // as it was, when the response is no token.
    [[nodiscard]] virtual bool FromToken(std::string_view model, std::string_view response,
                                         std::int32_t& value) const = 0;
    // The length of the longest token that is read, in characters.
    [[nodiscard]] virtual std::int32_t MaxTokenLength() const = 0;
};

// One row as it is written down: the value and its tokens, of which the first is sent.
using CEnumCommandItem = EnumRow;

// Something that holds for one instrument model, for the models of one family, or, with an empty
// key, for all.
class CModelBasedType {
  public:
    explicit CModelBasedType(std::string_view model) : model_(model) {}
    CModelBasedType(const CModelBasedType&) = delete;
    CModelBasedType& operator=(const CModelBasedType&) = delete;
    virtual ~CModelBasedType() = default;

    [[nodiscard]] const std::string& Model() const { return model_; }
    // Whether a model stays with `other`, which claimed it first, when this one claims it through a
    // family.
    [[nodiscard]] virtual bool KeepsExisting(const CModelBasedType& /*other*/) const {
        return true;
    }

  private:
    std::string model_;
};

// The two directions of one table, without its type.
class EnumCommandTable : public CModelBasedType {
  public:
    // A later row with the same value, or the same token, replaces what an earlier one said of it.
    // The rows are copied.
    EnumCommandTable(std::string_view model, std::span<const CEnumCommandItem> rows);

    // Null when there is no such value or token.
    [[nodiscard]] const std::string* FindToken(std::int32_t value) const {
        return writeTokens_.Find(value);
    }
    [[nodiscard]] const std::int32_t* FindValue(std::string_view token) const {
        return readTokens_.Find(token);
    }
    [[nodiscard]] std::int32_t LongestToken() const;

  private:
    HashMap<std::int32_t, std::string> writeTokens_;
    HashMap<std::string, std::int32_t> readTokens_;
};

// An enumeration of the type library, or short for the Boolean.
template <typename T>
concept EnumValue = sizeof(T) <= sizeof(std::int32_t) && (std::is_enum_v<T> || std::integral<T>);

// The table of one enumeration.
template <EnumValue T>
class CEnumCommand : public EnumCommandTable {
  public:
    using EnumCommandTable::EnumCommandTable;
};

// The tables in force: each is owned once and found under every model that it holds for.
template <typename Table>
class CModelBasedMap {
  public:
    // Resolves the table's key, tables being entered in the order of their builder:
    //  - the empty key and a model's name replace what stands under them;
    //  - a family's name stands for its models, and the first table to claim a model keeps it;
    //  - a table with any other key is dropped without a word.
    void Enter(std::unique_ptr<Table> table, const ModelFamilyTable& families) {
        const std::string& key = table->Model();
        if (key.empty() || families.IsKnownModel(key)) {
            tables_.Set(key, table.get());
        } else if (const auto models = families.ModelsOf(key); !models.empty()) {
            for (const std::string_view model : models) {
                Claim(model, table.get());
            }
        } else {
            return;
        }
        owned_.push_back(std::move(table));
    }

    // The model's own table, else the one for all models, else null.
    [[nodiscard]] const Table* Find(std::string_view model) const {
        Table* const* found = tables_.Find(model);
        if (found == nullptr) {
            found = tables_.Find(std::string_view());
        }
        return found == nullptr ? nullptr : *found;
    }

  private:
    void Claim(std::string_view model, Table* table) {
        Table*& inForce = tables_[model];
        if (inForce == nullptr || !table->KeepsExisting(*inForce)) {
            inForce = table;
        }
    }

    HashMap<std::string, Table*> tables_;
    std::vector<std::unique_ptr<Table>> owned_;
};

// The converter without its type.
class EnumCommandConverter : public IEnumConverter {
  public:
    [[nodiscard]] bool ToToken(std::string_view model, std::int32_t value,
                               std::string& token) const override;
    [[nodiscard]] bool FromToken(std::string_view model, std::string_view response,
                                 std::int32_t& value) const override;
    [[nodiscard]] std::int32_t MaxTokenLength() const override { return maxTokenLength_; }

  protected:
    void Add(std::unique_ptr<EnumCommandTable> table, const ModelFamilyTable& families);

  private:
    CModelBasedMap<EnumCommandTable> tables_;
    std::int32_t maxTokenLength_ = 0;
};

// All tables of one enumeration for one member.
template <EnumValue T>
class CEnumCommandConverter final : public EnumCommandConverter {
  public:
    // Takes the tables in the order of their builder. The length of the longest token counts those
    // too whose key is dropped.
    explicit CEnumCommandConverter(
        std::vector<std::unique_ptr<CEnumCommand<T>>> tables,
        const ModelFamilyTable& families = ModelFamilyTable::Instance()) {
        for (auto& table : tables) {
            Add(std::move(table), families);
        }
    }
    // One table for all models.
    explicit CEnumCommandConverter(std::span<const CEnumCommandItem> rows) {
        Add(std::make_unique<CEnumCommand<T>>("", rows), ModelFamilyTable::Instance());
    }

    // A 16-bit value may come with or without its sign widened.
    [[nodiscard]] bool ToToken(std::string_view model, std::int32_t value,
                               std::string& token) const override {
        return EnumCommandConverter::ToToken(
            model, static_cast<std::int32_t>(static_cast<T>(value)), token);
    }
};

// Enumeration values to names and back, for every model alike; case counts.
template <EnumValue T>
class CEnumNameConverter {
  public:
    // Of two pairs with the same name or value the later one counts.
    explicit CEnumNameConverter(std::span<const std::pair<std::string_view, T>> pairs) {
        for (const auto& [name, value] : pairs) {
            names_.Set(static_cast<std::int32_t>(value), std::string(name));
            values_.Set(name, value);
        }
    }
    CEnumNameConverter(const CEnumNameConverter&) = delete;
    CEnumNameConverter& operator=(const CEnumNameConverter&) = delete;
    virtual ~CEnumNameConverter() = default;

    // False, with the out parameter as it was, for what isn't listed.
    [[nodiscard]] virtual bool ToName(T value, std::string& name) const {
        return Copy(names_.Find(static_cast<std::int32_t>(value)), name);
    }
    [[nodiscard]] virtual bool FromName(std::string_view name, T& value) const {
        return Copy(values_.Find(name), value);
    }

  private:
    template <typename Found>
    static bool Copy(const Found* found, Found& out) {
        if (found == nullptr) {
            return false;
        }
        out = *found;
        return true;
    }

    HashMap<std::int32_t, std::string> names_;
    HashMap<std::string, T> values_;
};

}  // namespace kestrion
