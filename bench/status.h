// What the system tells of this process's memory.
#pragma once

#include <cstdio>
#include <cstring>

namespace bench {

// A line of /proc/self/status in kB; 0 where there is none. By C's files: the streams' own tables would
// count.
inline long statusKilobytes(const char* name) {
  long kilobytes = 0;
  std::FILE* status = std::fopen("/proc/self/status", "r");
  if (!status) return 0;
  const std::size_t length = std::strlen(name);
  for (char line[256]; std::fgets(line, sizeof line, status);)
    if (std::strncmp(line, name, length) == 0 && line[length] == ':')
      std::sscanf(line + length + 1, "%ld", &kilobytes);
  std::fclose(status);
  return kilobytes;
}

}  // namespace bench
