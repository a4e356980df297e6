// A host that is called with the arguments /a, "two words", "" and -b; it ends well when the library finds
// them.

#include <cstdio>

#include "vorquill21/text/string.hpp"

int main() {
  using namespace vorquill21;
  const CString strings;
  const Variant found = strings.CommandLineArgumentsParse();
  const Variant expected = BoundedArray<Variant>({Variant(), u"/a", u"two words", Variant(), u"-b"});
  std::printf("%s\n", ToUtf8(Platform::Native().GetProcess().CommandLine()).c_str());
  return found == expected && strings.CommandLineArgumentIndex(found, u"TWO WORDS") == 2 ? 0 : 1;
}
