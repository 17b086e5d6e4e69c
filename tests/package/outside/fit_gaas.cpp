// Fits one oscillator to a reflectivity of GaAs and prints its frequency in cm-1.
#include <kalvex/session/session.h>

#include <cstdio>

int main(int, char** argv) {
  kalvex::HeadlessPlatform platform;
  kalvex::Session session(platform);
  kalvex::DatasetSource source;
  source.MasterFile = argv[1];
  if (!session.LoadDataset(1, source).Ok()) return 1;
  const std::uint32_t model = *session.NewModel();
  const auto set = [&](kalvex::ParamRef param, double value) { return session.SetParam(param, {.value = value}).Ok(); };
  using kalvex::ParamRef;
  if (!set(ParamRef::EpsInf(model), 10.5) || !set(ParamRef::Row(model, 1, kalvex::Wo), 270) ||
      !set(ParamRef::Row(model, 1, kalvex::Wp), 380) || !set(ParamRef::Row(model, 1, kalvex::G), 3)) {
    return 1;
  }
  if (!session.OpenFit().Ok() || !session.AddTerm(1, model, {}).Ok() || !session.RunFit({}).Ok()) return 1;
  std::printf("%.2f\n", session.FindParam(ParamRef::Row(model, 1, kalvex::Wo))->value);
}
