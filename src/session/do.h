// The frame around every operation of a session: the gate, the history and the notification of listeners.
#pragma once

#include <type_traits>
#include <utility>

#include "records/model_table.h"
#include "session/session.h"

namespace kalvex {

template <class Act>
auto Session::Do(Operation operation, const Pieces& touched, Act act) -> decltype(act()) {
  const bool onGraphsAlone = (operation.influence & ~(kOnGraphs | kOnSettings | kOnFiles)) == 0;
  if (!onGraphsAlone) {
    if (Status busy = Gate(); !busy.Ok()) return busy;
  }
  // An operation on graphs during a fit is a step before that of the fit.
  history_.Begin(operation, touched, tables_);
  auto result = act();
  // An operation that failed after it changed something is a step of the history too.
  const bool changed = history_.End(tables_);
  Deliver(result.Ok() || changed ? &operation : nullptr);
  return result;
}

template <class Act>
auto Session::DoOutside(Operation operation, Act act) -> decltype(act()) {
  auto result = act();
  Deliver(result.Ok() ? &operation : nullptr);
  return result;
}

template <class Act>
Status Session::ChangeModel(std::uint32_t number, Operation operation, Changed what, Act change) {
  Model* const model = ModelOf(number);
  if (!model) return NoSuchModel(number);
  return Do(std::move(operation), Pieces().Model(kalvex::SlotOf(tables_.params, *model)), [&] {
    Status status = change(*model);
    if (!status.Ok()) return status;
    what == Changed::kRows ? HearRows(*model) : HearModel(*model);
    if (what == Changed::kRows) Tell(ChangeKind::kModelRows, number);
    return status;
  });
}

}  // namespace kalvex
