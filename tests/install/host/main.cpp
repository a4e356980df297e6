// A small host as its developer would write it. It ends well when the library does what it says.

#include <iostream>
#include <vorquill21/vorquill21.hpp>

int main() {
  using namespace vorquill21;

  CFileStream stream;
  stream.Initialise(u"DEMO 1.0", BoundedArray<Variant>::Empty());
  stream.AddField(u"PRESSURE", 2.5);
  const double pressure = stream.GetFieldNumber(u"PRESSURE").As<double>();

  const std::vector<double> nodes{0, 1, 2, 3, 4};
  std::int32_t index = -1;
  const bool isInside = CMathUtils().ArrayLocate(nodes, 3.5, index);

  const Text checksum = CFile().Crc32Make(u"123456789");
  const Text title = CFile().ParseFileTitle(u"D:\\data\\tyre.txt");
  const Text collapsed = CString().ReplaceMulti(u"a  b", u" ", u"-");

  std::cout << pressure << ' ' << index << ' ' << ToUtf8(checksum) << ' ' << ToUtf8(title) << ' '
            << ToUtf8(collapsed) << '\n';
  const bool isRight = pressure == 2.5 && isInside && index == 3 && checksum == u"CBF43926" &&
                       title == u"tyre" && collapsed == u"a-b";
  return isRight ? 0 : 1;
}
