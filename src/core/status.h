// The outcome of an operation: a Status, or a Result that holds a value or the Status of the failure. The compiler
// refuses a call that ignores either of them.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace kalvex {

enum class StatusCode {
  kOk,
  kBadArgument,  // the argument has no meaning, or lies outside its range
  kNotThere,     // what an argument names does not exist
  kFull,         // a table has no free entry
  kBusy,         // refused because a fit is running
  kNothingToDo,  // there is nothing that the operation could act on
  kCannotRead,   // a file cannot be opened
  kBadFormat,    // a file does not have the expected format
  kCannotWrite,  // a file cannot be written
  kOutOfMemory,
  kNotComputed,  // a model did not compute its values
};

class [[nodiscard]] Status {
 public:
  Status() = default;  // success
  // text: one sentence without a full stop, shown to the user. about: the subject, as the user named it ("model 3", a
  // file's name); may be empty.
  Status(StatusCode code, std::string text, std::string about = {})
      : code_(code), text_(std::move(text)), about_(std::move(about)) {}

  bool Ok() const { return code_ == StatusCode::kOk; }
  StatusCode Code() const { return code_; }
  const std::string& Text() const { return text_; }
  const std::string& About() const { return about_; }

  // For a caller that does not depend on success.
  void Ignore() const {}

 private:
  StatusCode code_ = StatusCode::kOk;
  std::string text_, about_;
};

template <class T>
class [[nodiscard]] Result {
 public:
  Result(T value) : value_(std::move(value)) {}            // NOLINT: a value is a result
  Result(Status failure) : status_(std::move(failure)) {}  // NOLINT: and so is a failure
  Result(StatusCode code, std::string text, std::string about = {})
      : status_(code, std::move(text), std::move(about)) {}

  bool Ok() const { return value_.has_value(); }
  const Status& GetStatus() const { return status_; }
  const std::string& Text() const { return status_.Text(); }

  // Valid only if Ok().
  const T& operator*() const { return *value_; }
  T& operator*() { return *value_; }
  const T* operator->() const { return &*value_; }

 private:
  std::optional<T> value_;
  Status status_;
};

// Failures that several operations report with the same text.
inline Status NoSuchModel(long long number) {
  std::string model = "model " + std::to_string(number);
  return {StatusCode::kNotThere, model + " does not exist", model};
}
inline Status NoSuchGraph(long long number) {
  std::string graph = "graph " + std::to_string(number);
  return {StatusCode::kNotThere, graph + " does not exist", graph};
}
inline Status NotLoaded(long long slot) {
  std::string dataset = "dataset " + std::to_string(slot);
  return {StatusCode::kNotThere, dataset + " is not loaded", dataset};
}
inline Status CannotOpen(const std::string& file) {
  return {StatusCode::kCannotRead, "'" + file + "' cannot be opened", file};
}
inline Status CannotWrite(const std::string& file) {
  return {StatusCode::kCannotWrite, "'" + file + "' cannot be written", file};
}

}  // namespace kalvex
