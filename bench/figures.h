// What was measured, as tables in Markdown.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace marovia::bench {

// Seconds of a run by the name of the benchmark: the median of the repetitions.
using Medians = std::map<std::string, double>;

// The ratios of one run against the goals, for each image; a goal without its peer is left out.
// `large` is the image whose time per pixel is held against that of its tile.
std::string GoalTable(const Medians& medians, const std::vector<std::string>& images,
                      const std::string& large);

// Milliseconds of every codec, and of every stage (nanoseconds of short ones).
std::string CodecTable(const Medians& medians);
std::string StageTable(const Medians& medians);

// The most memory at any time of whole runs over a square image, its own bytes not counted, in
// bytes per pixel. Each run is a process of its own; this one should hold little yet.
std::string MemoryTable(const std::string& imageFile, int side);

}  // namespace marovia::bench
