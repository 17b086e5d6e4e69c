// A session with a desk. A test can write and read their tables directly.
#pragma once

#include "session/session.h"
#include "support/test_platform.h"
#include "windows/desk.h"

namespace kalvex {

// A friend of Session.
struct SessionAccess {
  static SessionTables& Tables(Session& s) { return s.tables_; }
  static EvalContext& Eval(Session& s) { return s.eval_; }
};

struct OpenSession {
  TestPlatform platform;
  Session session{platform, 1, Defaults::kFormer};
  ParamTables& params = SessionAccess::Tables(session).params;
  DatasetTable& datasets = SessionAccess::Tables(session).datasets;
  FitState& fit = SessionAccess::Tables(session).fit;
  GraphTable& graphs = SessionAccess::Tables(session).graphs;
  EvalContext& eval = SessionAccess::Eval(session);
};

struct OpenDesk : OpenSession {
  Desk desk{session};
};

}  // namespace kalvex
