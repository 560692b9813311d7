// The looks that are one colour cube each.
#pragma once

#include <cctype>
#include <string>
#include <vector>

#include "lookup/cubes.h"

namespace tintwerk::test {

/// What is reported, and whether a missing file counts.
enum class Frame { kFinished, kReported, kGuarded };

struct FilmLook {
  std::string name, file;
  const CubeKind* kind = &kCube4x4;
  Frame frame = Frame::kFinished;
};

inline const std::vector<FilmLook> kFilmLooks = [] {
  std::vector<FilmLook> looks;
  for (const std::string suffix :
       {"A2", "A3", "B2", "B4", "C1", "G2",  "H2",  "K1", "M4", "M5", "P1", "P2", "P4",
        "P5", "P6", "P7", "P9", "S4", "SE1", "SE2", "T1", "T2", "T3", "X3", "X4", "X6"}) {
    std::string file = "style/" + suffix;
    for (char& letter : file) letter = char(std::tolower(letter));
    looks.push_back({"VSCO_" + suffix, file});
  }
  for (auto [look, file] :
       {std::pair{"H5", "style/H5"}, {"HeiBai", "style/gray"}, {"1970", "style/pomelo19"}})
    looks.push_back({std::string("VSCO_") + look, file});
  for (auto [look, file] : {std::pair{"ChenGuang", "171"}, {"FeiCui", "181"}, {"LiRi", "178"}})
    looks.push_back({look, file, &kCubeNew, Frame::kReported});
  for (auto [look, file] : {std::pair{"QingLiang", "style/pomelo3"}, {"WuCha", "style/pomelo10"}})
    looks.push_back({look, file, &kCube8x8, Frame::kReported});
  for (auto [look, file] : {std::pair{"MiDou", "170"},
                            {"NaTie", "167"},
                            {"QuQi", "169"},
                            {"RiChu", "180"},
                            {"RuoKeKe", "283"},
                            {"ShaLou", "183"},
                            {"YangPiJuan", "182"},
                            {"YeCan", "166"},
                            {"YueGuang", "284"}})
    looks.push_back({look, file, &kCubeNew, Frame::kGuarded});
  for (FilmLook& look : looks) look.name = "Effect_" + look.name;
  return looks;
}();

}  // namespace tintwerk::test
