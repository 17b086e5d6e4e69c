// The statement that an operation reports does the same as the operation.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "macro/run_macro.h"
#include "session/person.h"
#include "session/session_state.h"
#include "support/scratch_folder.h"
#include "support/test_platform.h"
#include "windows/desk.h"

namespace kalvex {
namespace {

// Operations that may report no statement, by the beginning of their label, and why.
struct Unspoken {
  const char* label;
  const char* reason;
};
constexpr Unspoken kUnspoken[] = {
    {"clear dataset", "only the dialog for loading clears the settings of a failed load"},
    {"cut dataset", "the fit of a macro hears of a cut later"},
    {"free all parameters of model", "the command fixes parameters only"},
    // A parameter.
    {"set ",
     "the commands know no limits of Einf; they always hold the value inside its limits, and with it the coupling "
     "group; they always notify the fit of an experimental parameter, and find it by its name, which it shares with "
     "its "
     "coupling group"},
    {"set options of the fit", "the command leaves out the options without effect"},
    {"add terms", "the command adds a single term"},
    {"remove terms", "the command finds a term by dataset and model instead of its id"},
    {"set weights of terms", "there is no command"},
    {"update", "there is no command"},
    {"close the fit", "only its window closes it"},
    {"axes of graph", "the command cannot hide a title, and a title has no quotes and few percent signs"},
    {"curve in graph", "the commands show symbols of data only"},
    {"remove a curve from graph", "the commands remove curves of data and of one Quantity of a model"},
    {"curves of graph", "the dialog replaces all curves at once"},
    {"resize graph", "only the mouse changes the size of a graph"},
    {"auto update", "a switch of the windows"},
    {"reader", "a switch of the windows"},
};

bool IsUnspoken(const std::string& label) {
  return std::any_of(std::begin(kUnspoken), std::end(kUnspoken),
                     [&](const Unspoken& unspoken) { return label.starts_with(unspoken.label); });
}

// One operation, and the state after it.
struct Entry {
  std::string label;
  std::string statement;
  std::string state;
};

class Notebook : public SessionListener {
 public:
  explicit Notebook(Session& session) : session_(session) { session.Listen(*this); }
  Notebook(const Notebook&) = delete;
  Notebook& operator=(const Notebook&) = delete;
  ~Notebook() override { session_.StopListening(*this); }
  void Changed(const Change&) override {}
  void Performed(const Operation& operation) override {
    entries.push_back({operation.label, operation.statement, StateOf(session_)});
  }
  std::vector<Entry> entries;

 private:
  Session& session_;
};

// The first lines in which two texts differ.
std::string Difference(const std::string& a, const std::string& b) {
  std::istringstream linesOfA(a), linesOfB(b);
  std::string lineOfA, lineOfB;
  while (true) {
    const bool moreOfA = !std::getline(linesOfA, lineOfA).fail(), moreOfB = !std::getline(linesOfB, lineOfB).fail();
    if (!moreOfA || !moreOfB) return a == b ? "" : "a line is missing";
    if (lineOfA != lineOfB) return "by hand:    " + lineOfA + "\nby a macro: " + lineOfB;
  }
}

// The text of the files in a folder, by name.
std::map<std::string, std::string> FilesIn(const ScratchFolder& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder.Name())) {
    const std::string name = entry.path().filename().string();
    files[name] = folder.Read(name);
  }
  return files;
}

class Statements : public testing::TestWithParam<unsigned> {
 protected:
  Statements() {
    folder.Write(kSpectrumFile, SpectrumText());
    again.Write(kSpectrumFile, SpectrumText());
  }
  // An operation without a statement is undone, so that the macro can do without it. False if that is not possible: it
  // was no step, but it has notified the fit, which has computed its values again.
  bool DoSomething(Person& person) {
    const std::string before = StateOf(session);
    const std::size_t steps = session.GetHistory().LabelsBack().size();
    person.DoSomething();
    session.EndGesture();
    std::vector<Entry>& entries = notebook.entries;
    if (entries.empty() || !entries.back().statement.empty()) return true;
    EXPECT_TRUE(IsUnspoken(entries.back().label)) << entries.back().label;
    entries.pop_back();
    if (session.GetHistory().LabelsBack().size() == steps) return StateOf(session) == before;
    EXPECT_TRUE(session.StepBack().Ok());
    EXPECT_EQ(Difference(before, StateOf(session)), "");
    return true;
  }

  ScratchFolder folder, again;
  TestPlatform platform;
  Session session{platform, 1, Defaults::kFormer};
  Notebook notebook{session};
};

TEST_P(Statements, AsAMacroLeadAFreshSessionThroughTheSameStatesToTheSameFiles) {
  {
    const InFolder inside(folder.Name());
    Person person(session, GetParam());
    person.byHand = false;  // a run by hand also enables the Undo button
    for (int i = 0; i < 400 && DoSomething(person); ++i) {
    }
  }
  std::string macro;
  for (const Entry& entry : notebook.entries) macro += entry.statement + '\n';
  folder.Write("m.kvs", macro);
  again.Write("m.kvs", macro);

  const InFolder inside(again.Name());
  TestPlatform other;
  Session fresh(other, 1, Defaults::kFormer);
  Desk desk(fresh);
  const Notebook replay(fresh);
  ASSERT_EQ(RunMacro(desk, "m.kvs"), kMacroEnded) << desk.macro.fault;
  for (std::size_t i = 0; i < std::min(replay.entries.size(), notebook.entries.size()); ++i) {
    const Entry& done = notebook.entries[i];
    ASSERT_EQ(replay.entries[i].label, done.label) << "statement " << i + 1 << ", " << done.statement;
    ASSERT_EQ(Difference(done.state, replay.entries[i].state), "") << "statement " << i + 1 << ", " << done.statement;
  }
  ASSERT_EQ(replay.entries.size(), notebook.entries.size());
  EXPECT_FALSE(replay.entries.empty());
  const auto here = FilesIn(again);
  for (const auto& [name, text] : FilesIn(folder)) {
    // A model file contains the slopes of the last evaluation, which may be that of an operation that was undone.
    if (name == "saved.kvm") continue;
    ASSERT_TRUE(here.contains(name)) << name;
    EXPECT_EQ(Difference(text, here.at(name)), "") << name;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, Statements, testing::Range(1u, 41u));

// The list has no entry without need.
TEST(UnspokenOperations, AllOccur) {
  std::set<std::string> missing;
  for (const Unspoken& unspoken : kUnspoken) missing.insert(unspoken.label);
  for (unsigned seed = 1; seed <= 20; ++seed) {
    const ScratchFolder folder;
    const InFolder inside(folder.Name());
    folder.Write(kSpectrumFile, SpectrumText());
    TestPlatform platform;
    Session session(platform, 1, Defaults::kFormer);
    const Notebook notebook(session);
    Person person(session, seed);
    for (int i = 0; i < 400; ++i) person.DoSomething();
    for (const Entry& entry : notebook.entries) {
      if (!entry.statement.empty()) continue;
      std::erase_if(missing, [&](const std::string& label) { return entry.label.starts_with(label); });
    }
  }
  EXPECT_EQ(missing, std::set<std::string>());
}

}  // namespace
}  // namespace kalvex
