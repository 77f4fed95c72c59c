#include "ProcessList.h"

#include "HostTools.h"
#include "SystemLog.h"

#include <algorithm>
#include <array>
#include <vector>

namespace brisko {
namespace {

constexpr std::size_t kLongestLine = 4096;
constexpr std::string_view kLoggedProcess = "43951";

enum Field : std::size_t { start, user, pid, pcpu, vsz, rss, etime, utime, stime, count };

std::vector<std::string_view> wordsOf(std::string_view line) {
  std::vector<std::string_view> words;
  while (words.size() <= count) {
    const std::size_t begin = line.find_first_not_of(" \t");
    if (begin == std::string_view::npos) break;
    line.remove_prefix(begin);
    const std::size_t end = std::min(line.find_first_of(" \t"), line.size());
    words.push_back(line.substr(0, end));
    line.remove_prefix(end);
  }
  return words;
}

/// The nine fields; fewer when the line is cut.
std::vector<std::string> fieldsOf(std::string_view line) {
  const std::vector<std::string_view> words = wordsOf(line);
  std::vector<std::string> fields;
  for (std::size_t word = 0; word < words.size() && fields.size() < count; ++word) {
    fields.emplace_back(words[word]);
    // What began before today has its day for a time, in two words: "Nov 20".
    const bool isDay = word == 0 && fields[0].find(':') == std::string::npos;
    if (isDay && words.size() > 1) fields[0] += " " + std::string(words[++word]);
  }
  return fields;
}

}  // namespace

ProcessList processListOf(std::string_view text) {
  ProcessList list;
  for (bool isHeader = true; !text.empty(); isHeader = false) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::vector<std::string> fields = fieldsOf(text.substr(0, std::min(end, kLongestLine)));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (isHeader || fields.size() < count) continue;
    if (fields[pid] == kLoggedProcess) {
      SystemLog::line("{} {} {} {} {} {} {} {} {}", fields[0], fields[1], fields[2], fields[3],
                      fields[4], fields[5], fields[6], fields[7], fields[8]);
    }
    list.insert_or_assign(fields[pid], ProcessFigures{fields[pcpu], fields[vsz], fields[etime]});
  }
  return list;
}

std::optional<ProcessList> readProcessList() {
  const HostTools::Outcome outcome =
      HostTools::run({"ps", "-eo", "start,user,pid,pcpu,vsz,rss,etime,utime,stime,msgsnd,msgrcv"});
  if (outcome.status != 0) return std::nullopt;
  return processListOf(outcome.output);
}

}  // namespace brisko
