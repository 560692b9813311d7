#include <dlfcn.h>

#include <cstdio>
#include <vector>

namespace {

int Fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  return 1;
}

}  // namespace

int main() {
  wchar_t root[] = RESOURCES;
  // Twice, as the library starts and stops with its module.
  for (int round = 0; round < 2; ++round) {
    void* plugin = dlopen(PLUGIN, RTLD_NOW | RTLD_LOCAL);
    if (!plugin) return Fail(dlerror());
    using Entry = int(unsigned char*, int, int, void*);
    auto* apply = reinterpret_cast<Entry*>(dlsym(plugin, "Apply"));
    if (!apply) return Fail(dlerror());

    std::vector<unsigned char> image(4 * 300 * 200, 100);
    if (apply(image.data(), 300, 200, root) != 1) return Fail("Effect_80S failed");
    for (std::size_t i = 0; i < image.size(); ++i)
      if (image[i] != (i % 4 == 3 ? 100 : image[i % 4]))
        return Fail("pixels differ or alpha changed");
    if (image[0] == 100 && image[1] == 100 && image[2] == 100) return Fail("nothing was painted");

    if (dlclose(plugin) != 0) return Fail(dlerror());
    if (dlopen("libtintwerk.so.0", RTLD_NOW | RTLD_NOLOAD))
      return Fail("the library is still loaded");
  }
  return 0;
}
