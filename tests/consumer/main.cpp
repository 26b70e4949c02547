#include <cstdio>

#include <dibkit.h>

int main() {
  const dibkit::OwnedDib picture(CBitmapCreator::CreateDibImage(4, 3, 24, 0));
  int pixels = 0;
  if (!dibkit::forEachPixel(picture.get(), [&](int, int, dibkit::Rgb) { ++pixels; }) || pixels != 12) {
    std::puts("consumer: no picture");
    return 1;
  }
  std::puts("consumer: the installed library works");
  return 0;
}
