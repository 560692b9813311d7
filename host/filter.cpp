// tintwerk filter: works pictures by one operation.
#include <stdexcept>
#include <string>

#include "commands.h"

int Filter(const FilterOptions& options) {
  const std::string name(options.operation->name);
  return RunWork(options, {.name = name, .run = [&](Picture& page, CObjProgress& progress) {
                             if (!options.operation->run(page, options.values.data(), &progress))
                               throw std::runtime_error(name + " failed");
                           }});
}
