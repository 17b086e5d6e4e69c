// Records the changes that a session reports.
#pragma once

#include <string>
#include <vector>

#include "session/session.h"

namespace kalvex {

// A change as text: "model 2" for a change of model 2, and so on.
class Ears : public SessionListener {
 public:
  explicit Ears(Session& session) : session_(session) { session.Listen(*this); }
  Ears(const Ears&) = delete;
  Ears& operator=(const Ears&) = delete;
  ~Ears() override { session_.StopListening(*this); }
  void Changed(const Change& change) override {
    static constexpr const char* kNames[] = {"dataset loaded",
                                             "dataset",
                                             "dataset unloaded",
                                             "new model",
                                             "model",
                                             "rows",
                                             "model loaded",
                                             "model closed",
                                             "experiment",
                                             "terms",
                                             "fit",
                                             "options",
                                             "run",
                                             "new graph",
                                             "graph",
                                             "graph closed",
                                             "settings",
                                             "everything"};
    heard.push_back(kNames[static_cast<int>(change.kind)]);
    if (change.id != 0) heard.back() += ' ' + std::to_string(change.id);
  }
  std::vector<std::string> heard;

 private:
  Session& session_;
};

}  // namespace kalvex
