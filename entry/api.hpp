// The library's one door beyond the documented declarations: everything the `tresk` command, the
// Python module and applications use. It brings the documented calls and records (entry/entry.hpp
// and the headers it names) and our own additions, all in namespace tresk:
//   reading     tresk::ReadChain, tresk::PolymerChains, tresk::CheckCoordinates (readChain.hpp)
//   distances   tresk::CheckDistances: chain breaks and clashes as numbers (distances.hpp)
//   naming      tresk::NameChain: the vote over closures of one chain with its verdict, dominant
//               type and share, standard or extended table; tresk::PolynomialOfClosedChain: one
//               projection of a closed chain (entry/naming.hpp)
//   surveys     tresk::ExpandSurveyInputs, tresk::SurveyFile and the row formats (survey.hpp)
//   fingerprint tresk::WriteFingerprint, tresk::FingerprintRows, tresk::ReadFingerprint
//   knot core   tresk::FindKnotCore (scan/core.hpp)
// Only the installed headers are reachable from here; the engine's internals are not.
#pragma once

#include <string>
#include <vector>

#include "alexander/determinant.hpp"   // for WhichKnotDouble_OrdNr (documented)
#include "alexander/polynomial.hpp"    // for ShowPoly (documented)
#include "chain/naming.hpp"            // for tresk::NamingOptions, tresk::VoteOverClosures
#include "core/records.hpp"            // for ChainAtom, RowFile, knots
#include "entry/entry.hpp"             // for the documented calls
#include "entry/naming.hpp"            // for tresk::NameChain, tresk::PolynomialOfClosedChain
#include "entry/survey.hpp"            // for tresk::SurveyFile, tresk::ExpandSurveyInputs
#include "knots/whichKnot.hpp"         // for WhichKnot_OrdNr (documented)
#include "preprocessing/chainprep.hpp" // for CheckDistancesBetweenAtoms, ChainReduce
#include "preprocessing/distances.hpp" // for tresk::CheckDistances
#include "preprocessing/readChain.hpp" // for tresk::ReadChain, tresk::ReadOptions
#include "scan/core.hpp"               // for tresk::FindKnotCore, tresk::CoreOptions
#include "scan/knotMap.hpp"            // for tresk::MapKnots, tresk::ClassifyChain
#include "scan/rows.hpp"               // for tresk::Fingerprint, tresk::ReadFingerprint
#include "scan/scan.hpp"               // for tresk::ScanOptions, tresk::WriteFingerprint
