#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillbox {

// A value that can give up its content under memory pressure and says so.
template <typename T>
concept DiscardableContent = requires(const T& value) {
    { value.isContentDiscarded() } -> std::convertible_to<bool>;
};

// A typed, bounded cache. It holds at most countLimit values and at most
// totalCostLimit in summed costs (0: no bound), and when either bound is
// passed, it lets go of the values used least recently first. Every value
// that leaves it, pushed out, replaced or removed, goes to onEvict. Safe to
// use from any thread; onEvict runs on the thread that caused the eviction,
// with the cache's lock released, so it may use the cache.
template <typename Key, typename Value, typename Hash = std::hash<Key>>
class NSwiftCache {
  public:
    using OnEvict = std::function<void(const Value&)>;

    explicit NSwiftCache(std::string name = {}, std::size_t countLimit = 0, OnEvict onEvict = {})
        : name_(std::move(name)), countLimit_(countLimit), onEvict_(std::move(onEvict)) {}
    NSwiftCache(const NSwiftCache&) = delete;
    NSwiftCache& operator=(const NSwiftCache&) = delete;

    std::string name() const {
        return locked([&] { return name_; });
    }
    void setName(std::string name) {
        locked([&] { name_ = std::move(name); });
    }
    std::size_t countLimit() const {
        return locked([&] { return countLimit_; });
    }
    void setCountLimit(std::size_t limit) { applyLimit(countLimit_, limit); }
    std::size_t totalCostLimit() const {
        return locked([&] { return totalCostLimit_; });
    }
    void setTotalCostLimit(std::size_t limit) { applyLimit(totalCostLimit_, limit); }
    // Whether a value whose content was discarded is dropped when it is next
    // looked up (for values that can say so; see DiscardableContent).
    bool evictsObjectsWithDiscardedContent() const {
        return locked([&] { return evicts_; });
    }
    void setEvictsObjectsWithDiscardedContent(bool evicts) {
        locked([&] { evicts_ = evicts; });
    }
    OnEvict onEvict() const {
        return locked([&] { return onEvict_; });
    }
    void setOnEvict(OnEvict onEvict) {
        locked([&] { onEvict_ = std::move(onEvict); });
    }

    std::optional<Value> value(const Key& key) {
        std::optional<Value> found;
        Evicted evicted;
        {
            std::lock_guard lock(mutex_);
            const auto entry = index_.find(key);
            if (entry == index_.end())
                return std::nullopt;
            if (isDiscarded(entry->second->value)) {
                evicted.push_back(take(entry->second));
            } else {
                recency_.splice(recency_.end(), recency_, entry->second);
                found = entry->second->value;
            }
        }
        report(evicted);
        return found;
    }
    // Without a cost the value costs nothing.
    void setValue(Value value, const Key& key, std::optional<std::size_t> cost = std::nullopt) {
        Evicted evicted;
        {
            std::lock_guard lock(mutex_);
            if (const auto entry = index_.find(key); entry != index_.end())
                evicted.push_back(take(entry->second));
            recency_.push_back(Entry{key, std::move(value), cost.value_or(0)});
            index_.emplace(key, std::prev(recency_.end()));
            totalCost_ += recency_.back().cost;
            trimToLimits(evicted);
        }
        report(evicted);
    }
    void removeValue(const Key& key) {
        Evicted evicted;
        {
            std::lock_guard lock(mutex_);
            if (const auto entry = index_.find(key); entry != index_.end())
                evicted.push_back(take(entry->second));
        }
        report(evicted);
    }
    void removeAllObjects() {
        Evicted evicted;
        {
            std::lock_guard lock(mutex_);
            while (!recency_.empty())
                evicted.push_back(take(recency_.begin()));
        }
        report(evicted);
    }

    std::size_t count() const {
        return locked([&] { return recency_.size(); });
    }
    std::size_t totalCost() const {
        return locked([&] { return totalCost_; });
    }

    // cache[key] reads like value(key); assigning a value stores it,
    // assigning nothing removes the key. cache.slot(key, cost) stores with a
    // cost.
    class Slot {
      public:
        operator std::optional<Value>() const { return cache_.value(key_); }
        Slot& operator=(std::optional<Value> value) {
            if (value)
                cache_.setValue(std::move(*value), key_, cost_);
            else
                cache_.removeValue(key_);
            return *this;
        }

      private:
        friend class NSwiftCache;
        Slot(NSwiftCache& cache, Key key, std::optional<std::size_t> cost)
            : cache_(cache), key_(std::move(key)), cost_(cost) {}
        NSwiftCache& cache_;
        Key key_;
        std::optional<std::size_t> cost_;
    };
    Slot operator[](Key key) { return Slot(*this, std::move(key), std::nullopt); }
    Slot slot(Key key, std::optional<std::size_t> cost) {
        return Slot(*this, std::move(key), cost);
    }

  private:
    struct Entry {
        Key key;
        Value value;
        std::size_t cost;
    };
    using Recency = std::list<Entry>;  // least recently used first
    using Evicted = std::vector<Value>;

    template <typename Body>
    auto locked(Body&& body) const {
        std::lock_guard lock(mutex_);
        return body();
    }

    bool isDiscarded(const Value& value) const {
        if constexpr (DiscardableContent<Value>)
            return evicts_ && value.isContentDiscarded();
        else
            return false;
    }

    Value take(typename Recency::iterator entry) {
        Value value = std::move(entry->value);
        totalCost_ -= entry->cost;
        index_.erase(entry->key);
        recency_.erase(entry);
        return value;
    }

    bool overLimits() const {
        return (countLimit_ > 0 && recency_.size() > countLimit_) ||
               (totalCostLimit_ > 0 && totalCost_ > totalCostLimit_);
    }

    void trimToLimits(Evicted& evicted) {
        while (!recency_.empty() && overLimits())
            evicted.push_back(take(recency_.begin()));
    }

    void applyLimit(std::size_t& limit, std::size_t value) {
        Evicted evicted;
        {
            std::lock_guard lock(mutex_);
            limit = value;
            trimToLimits(evicted);
        }
        report(evicted);
    }

    void report(const Evicted& evicted) const {
        if (evicted.empty())
            return;
        const auto onEvict = this->onEvict();
        if (!onEvict)
            return;
        for (const auto& value : evicted)
            onEvict(value);
    }

    mutable std::mutex mutex_;
    std::string name_;
    std::size_t countLimit_;
    std::size_t totalCostLimit_ = 0;
    bool evicts_ = true;
    OnEvict onEvict_;
    Recency recency_;
    std::unordered_map<Key, typename Recency::iterator, Hash> index_;
    std::size_t totalCost_ = 0;
};

}  // namespace quillbox
