#include <cstdio>

#include <dibkit.h>

int main() {
  const dibkit::OwnedDib picture(CBitmapCreator::CreateDibImage(4, 3, 24, 0));
  if (!picture || GetDIBBits(picture.get()) == nullptr) {
    std::puts("consumer: no picture");
    return 1;
  }
  std::puts("consumer: the installed library works");
  return 0;
}
