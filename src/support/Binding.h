#pragma once

#include <functional>
#include <utility>

namespace quillbox {

// A two-way binding: a read closure and a write closure over one value held
// elsewhere. Reads and writes go through to the owner every time.
template <typename T>
class Binding {
  public:
    Binding(std::function<T()> get, std::function<void(T)> set)
        : get_(std::move(get)), set_(std::move(set)) {}

    T get() const { return get_(); }
    void set(T value) const { set_(std::move(value)); }

    operator T() const { return get(); }
    const Binding& operator=(T value) const {
        set(std::move(value));
        return *this;
    }

  private:
    std::function<T()> get_;
    std::function<void(T)> set_;
};

}  // namespace quillbox
