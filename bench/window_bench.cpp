// The windows on a screen: the time to the first window, and how fast a graph follows the slider of the parameter
// control.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <QApplication>
#include <QSlider>
#include <array>
#include <csignal>
#include <cstdlib>
#include <string>

#include "graphs/graph_table.h"
#include "session/session.h"
#include "windows/desk.h"
#include "windows/qt/keeper.h"
#include "windows/qt/qt_platform.h"

namespace {

using namespace kalvex;

// ---- start

// Detects windows that appear on the screen.
class ScreenWatch {
 public:
  ScreenWatch() : connection_(xcb_connect(nullptr, nullptr)) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, root, XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection_);
  }
  ScreenWatch(const ScreenWatch&) = delete;
  ScreenWatch& operator=(const ScreenWatch&) = delete;
  ~ScreenWatch() { xcb_disconnect(connection_); }

  // Waits for a window; false if the screen is closed.
  bool SeesWindow() {
    constexpr std::uint8_t kType = 0x7F;
    while (xcb_generic_event_t* const event = xcb_wait_for_event(connection_)) {
      const bool shown = (event->response_type & kType) == XCB_MAP_NOTIFY;
      std::free(event);
      if (shown) return true;
    }
    return false;
  }

 private:
  xcb_connection_t* connection_;
};

void StartToTheFirstWindow(benchmark::State& state) {
  for (auto _ : state) {
    ScreenWatch screen;
    std::string program = KALVEX_PROGRAM;
    char* const args[] = {program.data(), nullptr};
    pid_t child = 0;
    if (::posix_spawn(&child, KALVEX_PROGRAM, nullptr, nullptr, args, environ) != 0) state.SkipWithError("no start");
    if (!screen.SeesWindow()) state.SkipWithError("no window");
    state.PauseTiming();
    ::kill(child, SIGTERM);
    ::waitpid(child, nullptr, 0);
    state.ResumeTiming();
  }
}
BENCHMARK(StartToTheFirstWindow)->Unit(benchmark::kMillisecond)->UseRealTime();

// ---- slider

// Counts how often a widget is painted.
class PaintCount : public QObject {
 public:
  explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }
  int count = 0;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    count += event->type() == QEvent::Paint;
    return false;
  }
};

// A model of 25 oscillators, a graph of 800 x 600 with its reflectivity, and the slider at the first frequency.
struct Sweep {
  HeadlessPlatform headless;
  Session session{headless};
  Desk desk{session};
  Keeper keeper{desk};
  QtPlatform platform{keeper};

  Sweep() {
    session.UsePlatform(platform);
    const std::uint32_t model = *session.NewModel();
    for (int row = 1; row <= 25; ++row) {
      if (row > 1) session.InsertRow(model, row).Ignore();
      const std::array<double, 3> numbers = {100.0 + 36 * (row - 1), 150, 15};
      for (int column = 0; column < kColumns; ++column) {
        session.SetParam(ParamRef::Row(model, row, column), {.value = numbers[static_cast<std::size_t>(column)]})
            .Ignore();
      }
    }
    const std::uint32_t graph = *session.NewGraph();
    session.AddCurve(graph, ModelCurve(*session.FindModel(model), kRefl)).Ignore();
    session.ResizeGraph(graph, 800, 600).Ignore();
    OpenParamControl(desk);
    SelectParam(desk, ParamRef::Row(model, 1, Wo));
    Settle();
  }
  ~Sweep() { session.UsePlatform(headless); }

  void Settle() {
    keeper.Reconcile();
    QCoreApplication::processEvents();
  }
  QWidget& graphWidget() { return *keeper.graphWidget(1); }
  QSlider& slider() {
    for (QWidget* const widget : QApplication::allWidgets()) {
      if (auto* const found = qobject_cast<QSlider*>(widget)) return *found;
    }
    std::abort();  // the parameter control has one
  }
};

void SliderToTheRepaintedGraph(benchmark::State& state) {
  Sweep sweep;
  PaintCount paints(sweep.graphWidget());
  QSlider& slider = sweep.slider();
  slider.setSliderDown(true);
  int position = 20;
  for (auto _ : state) {
    position = position == 20 ? 60 : position - 1;
    const int before = paints.count;
    slider.setSliderPosition(position);
    while (paints.count == before) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
}
BENCHMARK(SliderToTheRepaintedGraph)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
