// The driver's hash map: chained, visited in the order of its buckets, so that what is walked is
// walked in the same order in every build.
//
// A text hashes by h = h * 33 + unit from 0; a byte stands for the unit of its value, so that
// instrument text hashes as its 16-bit form does. An integer hashes to itself. Keys compare
// exactly. There are 17 buckets at first; when the number of entries leaves 0.25 to 2.25 per
// bucket the buckets are rebuilt for 0.75, as a prime number of them and never fewer than at first.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace kestrion {

// What a map has to know of its keys. `View` is what they are looked up by.
template <typename Key>
struct HashTraits;

struct TextHashTraits {
    using View = std::string_view;
    // Called once for each look-up and nowhere else: tests count look-ups by its calls.
    [[nodiscard]] static std::uint32_t Hash(std::string_view text);
    [[nodiscard]] static constexpr bool Equals(std::string_view a, std::string_view b) {
        return a == b;
    }
};

// Keys that ignore the case of A to Z; where a map wants such, it names these traits.
struct IgnoreCaseHashTraits {
    using View = std::string_view;
    // Called once for each look-up, and Equals once for each key that is compared, as above.
    [[nodiscard]] static std::uint32_t Hash(std::string_view text);
    [[nodiscard]] static bool Equals(std::string_view a, std::string_view b);
};

template <>
struct HashTraits<std::string> : TextHashTraits {};

// The map doesn't own such keys: their text has to outlive it.
template <>
struct HashTraits<std::string_view> : TextHashTraits {};

template <std::integral Key>
struct HashTraits<Key> {
    using View = Key;
    [[nodiscard]] static constexpr std::uint32_t Hash(Key key) {
        return static_cast<std::uint32_t>(key);
    }
    [[nodiscard]] static constexpr bool Equals(Key a, Key b) { return a == b; }
};

// Not for two threads at a time, unless all of them only read. The address of a value stays until
// the value is removed.
template <typename Key, typename Value, typename Traits = HashTraits<Key>>
class HashMap {
    struct Node;
    using Link = std::unique_ptr<Node>;

  public:
    using View = typename Traits::View;
    struct Entry {
        const Key key;
        Value value;
    };

    template <bool kConst>
    class Iterator {
      public:
        using MapPointer = std::conditional_t<kConst, const HashMap*, HashMap*>;
        using value_type = Entry;
        using difference_type = std::ptrdiff_t;
        using reference = std::conditional_t<kConst, const Entry&, Entry&>;
        using iterator_category = std::forward_iterator_tag;

        Iterator() = default;
        Iterator(MapPointer map, std::size_t bucket) : map_(map), bucket_(bucket) {
            SkipEmptyBuckets();
        }
        reference operator*() const { return node_->entry; }
        auto* operator->() const { return &node_->entry; }
        Iterator& operator++() {
            node_ = node_->next.get();
            if (node_ == nullptr) {
                ++bucket_;
                SkipEmptyBuckets();
            }
            return *this;
        }
        Iterator operator++(int) {
            Iterator before = *this;
            ++*this;
            return before;
        }
        friend bool operator==(const Iterator& a, const Iterator& b) { return a.node_ == b.node_; }

      private:
        void SkipEmptyBuckets() {
            while (bucket_ < map_->buckets_.size() && map_->buckets_[bucket_] == nullptr) {
                ++bucket_;
            }
            node_ = bucket_ < map_->buckets_.size() ? map_->buckets_[bucket_].get() : nullptr;
        }

        MapPointer map_ = nullptr;
        std::size_t bucket_ = 0;
        Node* node_ = nullptr;
    };
    using iterator = Iterator<false>;
    using const_iterator = Iterator<true>;

    HashMap() = default;
    HashMap(HashMap&& other) noexcept
        : buckets_(std::move(other.buckets_)), size_(std::exchange(other.size_, 0)) {
        other.buckets_.clear();
    }
    HashMap& operator=(HashMap&& other) noexcept {
        std::swap(buckets_, other.buckets_);
        std::swap(size_, other.size_);
        return *this;
    }
    ~HashMap() { Clear(); }

    [[nodiscard]] std::size_t Size() const { return size_; }
    [[nodiscard]] bool IsEmpty() const { return size_ == 0; }
    // The number of buckets, which are made with the first entry.
    [[nodiscard]] std::size_t BucketCount() const { return buckets_.size(); }

    // The value of `key`, or null. Allocates nothing.
    [[nodiscard]] Value* Find(View key) {
        Node* node = FindNode(key);
        return node == nullptr ? nullptr : &node->entry.value;
    }
    [[nodiscard]] const Value* Find(View key) const {
        const Node* node = FindNode(key);
        return node == nullptr ? nullptr : &node->entry.value;
    }
    [[nodiscard]] bool Contains(View key) const { return FindNode(key) != nullptr; }

    // The value of `key`, which is made when it isn't there.
    Value& operator[](View key) {
        if (Node* found = FindNode(key)) {
            return found->entry.value;
        }
        return Add(key, Value()).entry.value;
    }
    // Sets the value of `key`, new or not.
    void Set(View key, Value value) {
        if (Node* found = FindNode(key)) {
            found->entry.value = std::move(value);
            return;
        }
        Add(key, std::move(value));
    }
    // Adds `key` unless it is there; returns whether it was added.
    bool TryAdd(View key, Value value) {
        if (Contains(key)) {
            return false;
        }
        Add(key, std::move(value));
        return true;
    }
    // Returns whether there was such a key.
    bool Remove(View key) {
        if (buckets_.empty()) {
            return false;
        }
        const std::uint32_t hash = Traits::Hash(key);
        for (Link* link = &Bucket(hash); *link != nullptr; link = &(*link)->next) {
            if ((*link)->hash == hash && Traits::Equals((*link)->entry.key, key)) {
                *link = std::exchange((*link)->next, nullptr);
                --size_;
                RebuildIfThin();
                return true;
            }
        }
        return false;
    }
    void Clear() {
        for (Link& bucket : buckets_) {
            // One node at a time: a long chain must not be freed by recursion.
            while (bucket != nullptr) {
                bucket = std::exchange(bucket->next, nullptr);
            }
        }
        buckets_.clear();
        size_ = 0;
    }

    [[nodiscard]] iterator begin() { return iterator(this, 0); }
    [[nodiscard]] iterator end() { return iterator(this, buckets_.size()); }
    [[nodiscard]] const_iterator begin() const { return const_iterator(this, 0); }
    [[nodiscard]] const_iterator end() const { return const_iterator(this, buckets_.size()); }

  private:
    struct Node {
        Entry entry;
        std::uint32_t hash;
        Link next;
    };

    static constexpr std::size_t kFirstBuckets = 17;

    [[nodiscard]] Link& Bucket(std::uint32_t hash) { return buckets_[hash % buckets_.size()]; }

    [[nodiscard]] Node* FindNode(View key) const {
        if (buckets_.empty()) {
            return nullptr;
        }
        const std::uint32_t hash = Traits::Hash(key);
        Node* node = buckets_[hash % buckets_.size()].get();
        while (node != nullptr && !(node->hash == hash && Traits::Equals(node->entry.key, key))) {
            node = node->next.get();
        }
        return node;
    }

    Node& Add(View key, Value value) {
        if (buckets_.empty()) {
            buckets_.resize(kFirstBuckets);
        }
        const std::uint32_t hash = Traits::Hash(key);
        Link added(new Node{Entry{Key(key), std::move(value)}, hash, nullptr});
        Node& node = *added;
        // Thresholds are in quarters, so that they are exact.
        if ((size_ + 1) * 4 > buckets_.size() * 9) {
            Rebuild(size_ + 1);
        }
        Prepend(std::move(added));
        ++size_;
        return node;
    }

    void Prepend(Link node) {
        Link& bucket = Bucket(node->hash);
        node->next = std::move(bucket);
        bucket = std::move(node);
    }

    void RebuildIfThin() {
        if (buckets_.size() > kFirstBuckets && size_ * 4 < buckets_.size()) {
            Rebuild(size_);
        }
    }

    // Makes the buckets that `entries` need and moves every node.
    void Rebuild(std::size_t entries) {
        std::vector<Link> former(NextPrime(entries * 4 / 3));
        former.swap(buckets_);
        for (Link& bucket : former) {
            while (bucket != nullptr) {
                Link node = std::move(bucket);
                bucket = std::move(node->next);
                Prepend(std::move(node));
            }
        }
    }

    // A multiple of 3 or 11 would make a text's place depend on its last letter alone.
    [[nodiscard]] static constexpr std::size_t NextPrime(std::size_t least) {
        std::size_t candidate = least < kFirstBuckets ? kFirstBuckets : least | 1U;
        while (!IsPrime(candidate)) {
            candidate += 2;
        }
        return candidate;
    }
    [[nodiscard]] static constexpr bool IsPrime(std::size_t odd) {
        for (std::size_t divisor = 3; divisor * divisor <= odd; divisor += 2) {
            if (odd % divisor == 0) {
                return false;
            }
        }
        return true;
    }

    std::vector<Link> buckets_;
    std::size_t size_ = 0;
};

}  // namespace kestrion
