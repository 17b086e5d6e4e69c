// SharedList: a list that is built once and never changes. Copies share its memory.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace kalvex {

template <class T>
class SharedList {
 public:
  SharedList() = default;
  SharedList(std::vector<T> list) : list_(std::make_shared<const std::vector<T>>(std::move(list))) {}  // NOLINT

  const std::vector<T>& Get() const {
    static const std::vector<T> kEmpty;
    return list_ ? *list_ : kEmpty;
  }
  std::size_t size() const { return Get().size(); }
  bool empty() const { return Get().empty(); }
  const T& operator[](std::size_t i) const { return (*list_)[i]; }
  const T& front() const { return list_->front(); }
  const T& back() const { return list_->back(); }
  auto begin() const { return Get().begin(); }
  auto end() const { return Get().end(); }

  // By content. Copies of one list are not looked through.
  bool operator==(const SharedList& other) const { return list_ == other.list_ || Get() == other.Get(); }

 private:
  std::shared_ptr<const std::vector<T>> list_;
};

}  // namespace kalvex
