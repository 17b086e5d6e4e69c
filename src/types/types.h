// Overview of src/types: the special models, one `ModelType` each. Floor 5: uses terms and evaluation. The session puts
// `ModelTypeTable` into its `EvalContext`; all other code calls types through evaluation.
//
// A model with Einf = -code is special: its rows are the arguments of a type. Read the files in this order:
//   frame.h        what all types share: `TypeInputs`, `TypeRun`, `FittedType`, `ShownType`; begin here
//   stacks/sample_in_medium.cpp   the shortest type, as an example
//   describe.h     the user's page of a type and the macro on it, made from its row map
//   types.h        (this file) `ModelTypeTable`, the table of all types in the order of the lists
// The types themselves, by subject: crystals (anisotropic surfaces), derived (ratios and differences of models),
// landau (Landau levels; ladder_sum.h is their Kubo sum), lattice (tight-binding bands; band_response.h), lines (single
// line shapes, other axes), magneto (circular polarisations; circular.h), mixtures (effective media), near_field
// (tips), stacks (films and multilayers), time_domain (pulses). A new type needs its file, its declaration and its
// place in the table here; tests/types/every_type_test.cpp tests it from its row map.
#pragma once

#include "evaluation/model_type.h"

namespace kalvex {

extern const ModelType kDifferentialModel;
extern const ModelType kMultilayerSample;
extern const ModelType kOrthorhombicSample;
extern const ModelType kDiffOrthoSample;
extern const ModelType kOrthoTwoLayers;
extern const ModelType kExtendedDrude;
extern const ModelType kBilayerLocalField;
extern const ModelType kSerialResistor;
extern const ModelType kEpsilonMu;
extern const ModelType kSpectralWeight;
extern const ModelType kUniversalOmegaT;
extern const ModelType kElectronPhonon;
extern const ModelType kPlate;
extern const ModelType kFilmSubstrateEllips;
extern const ModelType kEmaPowder;
extern const ModelType kOrthoTilted;
extern const ModelType kSampleInMedium;
extern const ModelType kMagneticFilm;
extern const ModelType kMiscutVelmont;
extern const ModelType kTimeDomain;
extern const ModelType kSampleOnMirror;
extern const ModelType kTimeDomain2;
extern const ModelType kEllipsometer;
extern const ModelType kThermalRelaxation;
extern const ModelType kRxdSorvald;
extern const ModelType kStmTarneck;
extern const ModelType kStmBandStructure;
extern const ModelType kDiffModelGeneral;
extern const ModelType kFaraday;
extern const ModelType kBandsCondBilayer;
extern const ModelType kMultilayerSample2;
extern const ModelType kFilmSubstrateNoFringes;
extern const ModelType kDfBilayer;
extern const ModelType kDfBilayerDifference;
extern const ModelType kDfBilayer2;
extern const ModelType kDfBilayer2Difference;
extern const ModelType kDfBilayerPhonon;
extern const ModelType kFano;
extern const ModelType kEmaTwoComponents;
extern const ModelType kGrapheneMagnetooptics;
extern const ModelType kFanoOriginal;
extern const ModelType kLorentzTest;
extern const ModelType kVeskFaraday;
extern const ModelType kMagnetoDrude;
extern const ModelType kFano2Original;
extern const ModelType kElectronGasFaraday;
extern const ModelType kMagnetooptics;
extern const ModelType kMagnetoopticsEpsSigma;
extern const ModelType kMagnetoopticsReflTrans;
extern const ModelType kTimeDomainEpsMu;
extern const ModelType kGrapheneCircular;
extern const ModelType kVoigtDl;
extern const ModelType kOskelPhase;
extern const ModelType kGraphiteMagnetooptics;
extern const ModelType kGraphiteMagnetooptics2;
extern const ModelType kRenvikDalmor;
extern const ModelType kIntrinsicKerr;
extern const ModelType kGraphiteMagnetooptics3;
extern const ModelType kGraphiteMagnetooptics4;
extern const ModelType kBilayerGrapheneMagnetooptics;
extern const ModelType kBilayerGrapheneBands;
extern const ModelType kDfTrilayer;
extern const ModelType kMagnetoplasmonStripes;
extern const ModelType kFilmSubstrateBetterPsiDelta;
extern const ModelType kSurfacePlasmon;
extern const ModelType kNearFieldReflection;
extern const ModelType kBismuthMagnetooptics;
extern const ModelType kBismuthBands;
extern const ModelType kGrapheneRibbons;
extern const ModelType kNearFieldAnisotropicSubstrate;
extern const ModelType kSlabWithSheet;
extern const ModelType kFaradayCheck;
extern const ModelType kNearFieldTip;
extern const ModelType kRatioOfFilmSubstrate;
extern const ModelType kGappedBilayerKerr;
extern const ModelType kNearFieldTip2;
extern const ModelType kGrapheneEma;
extern const ModelType kComplexWaveplates;
extern const ModelType kGrapheneCavity;
extern const ModelType kModelMinusModel;
extern const ModelType kPressureCell;
extern const ModelType kMagnetoopticsDichroism;
extern const ModelType kPhotocurrent;
extern const ModelType kTimeDomain3;
extern const ModelType kMultilayer3;
extern const ModelType kWeylKubo;
extern const ModelType kWeylBands;
extern const ModelType kRatioOfMagnetooptics;
extern const ModelType kMagnetotransport;
extern const ModelType kGrapheneMagnetoConductivity;
extern const ModelType kGrapheneDevice;
extern const ModelType kRatioOfGrapheneDevice;
extern const ModelType kMagnetoopticsOfDevice;
extern const ModelType kMagnetoopticsExtendedDrude;
extern const ModelType kSpecialStrain;
extern const ModelType kGasCorrection;
extern const ModelType kMagnetoplasmon;
extern const ModelType kNearFieldTip3;
extern const ModelType kMultilayerFiniteQ;
extern const ModelType kNearFieldTip4;
extern const ModelType kTiltedReflection;
extern const ModelType kAnisotropicMagnetic;
extern const ModelType kNearFieldTip5;
extern const ModelType kBlgMagnetooptics;
extern const ModelType kBlgLevels;
extern const ModelType kRaman;

// 106 types; codes have gaps, and some types share a name.
inline constexpr const ModelType* ModelTypeTable[] = {
    &kDifferentialModel,
    &kMultilayerSample,
    &kOrthorhombicSample,
    &kDiffOrthoSample,
    &kOrthoTwoLayers,
    &kExtendedDrude,
    &kBilayerLocalField,
    &kSerialResistor,
    &kEpsilonMu,
    &kSpectralWeight,
    &kUniversalOmegaT,
    &kElectronPhonon,
    &kPlate,
    &kFilmSubstrateEllips,
    &kEmaPowder,
    &kOrthoTilted,
    &kSampleInMedium,
    &kMagneticFilm,
    &kMiscutVelmont,
    &kTimeDomain,
    &kSampleOnMirror,
    &kTimeDomain2,
    &kEllipsometer,
    &kThermalRelaxation,
    &kRxdSorvald,
    &kStmTarneck,
    &kStmBandStructure,
    &kDiffModelGeneral,
    &kFaraday,
    &kBandsCondBilayer,
    &kMultilayerSample2,
    &kFilmSubstrateNoFringes,
    &kDfBilayer,
    &kDfBilayerDifference,
    &kDfBilayer2,
    &kDfBilayer2Difference,
    &kDfBilayerPhonon,
    &kFano,
    &kEmaTwoComponents,
    &kGrapheneMagnetooptics,
    &kFanoOriginal,
    &kLorentzTest,
    &kVeskFaraday,
    &kMagnetoDrude,
    &kFano2Original,
    &kElectronGasFaraday,
    &kMagnetooptics,
    &kMagnetoopticsEpsSigma,
    &kMagnetoopticsReflTrans,
    &kTimeDomainEpsMu,
    &kGrapheneCircular,
    &kVoigtDl,
    &kOskelPhase,
    &kGraphiteMagnetooptics,
    &kGraphiteMagnetooptics2,
    &kRenvikDalmor,
    &kIntrinsicKerr,
    &kGraphiteMagnetooptics3,
    &kGraphiteMagnetooptics4,
    &kBilayerGrapheneMagnetooptics,
    &kBilayerGrapheneBands,
    &kDfTrilayer,
    &kMagnetoplasmonStripes,
    &kFilmSubstrateBetterPsiDelta,
    &kSurfacePlasmon,
    &kNearFieldReflection,
    &kBismuthMagnetooptics,
    &kBismuthBands,
    &kGrapheneRibbons,
    &kNearFieldAnisotropicSubstrate,
    &kSlabWithSheet,
    &kFaradayCheck,
    &kNearFieldTip,
    &kRatioOfFilmSubstrate,
    &kGappedBilayerKerr,
    &kNearFieldTip2,
    &kGrapheneEma,
    &kComplexWaveplates,
    &kGrapheneCavity,
    &kModelMinusModel,
    &kPressureCell,
    &kMagnetoopticsDichroism,
    &kPhotocurrent,
    &kTimeDomain3,
    &kMultilayer3,
    &kWeylKubo,
    &kWeylBands,
    &kRatioOfMagnetooptics,
    &kMagnetotransport,
    &kGrapheneMagnetoConductivity,
    &kGrapheneDevice,
    &kRatioOfGrapheneDevice,
    &kMagnetoopticsOfDevice,
    &kMagnetoopticsExtendedDrude,
    &kSpecialStrain,
    &kGasCorrection,
    &kMagnetoplasmon,
    &kNearFieldTip3,
    &kMultilayerFiniteQ,
    &kNearFieldTip4,
    &kTiltedReflection,
    &kAnisotropicMagnetic,
    &kNearFieldTip5,
    &kBlgMagnetooptics,
    &kBlgLevels,
    &kRaman,
};

}  // namespace kalvex
