#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/win32.h"

#if defined(_WIN32)
#include <winver.h>
#else
#include <dlfcn.h>
#endif

namespace {

#if defined(_WIN32)
using Module = HMODULE;
Module load() { return LoadLibraryA(LIBRARY_FILE); }
bool unload(Module module) { return FreeLibrary(module) != FALSE; }
bool isLoaded() { return GetModuleHandleA(LIBRARY_FILE) != nullptr; }
void* find(Module module, const char* name) { return reinterpret_cast<void*>(GetProcAddress(module, name)); }
/// The version resource.
std::string versionOfFile() {
  DWORD unused = 0;
  const DWORD bytes = GetFileVersionInfoSizeA(LIBRARY_FILE, &unused);
  std::vector<std::byte> resource(bytes);
  void* value = nullptr;
  UINT length = 0;
  if (!GetFileVersionInfoA(LIBRARY_FILE, 0, bytes, resource.data()) ||
      !VerQueryValueA(resource.data(), "\\", &value, &length) || length < sizeof(VS_FIXEDFILEINFO)) {
    return "none";
  }
  const auto* info = static_cast<const VS_FIXEDFILEINFO*>(value);
  return std::to_string(info->dwFileVersionMS >> 16) + "." + std::to_string(info->dwFileVersionMS & 0xFFFF) +
         "." + std::to_string(info->dwFileVersionLS >> 16);
}
#else
using Module = void*;
Module load() { return dlopen(LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL); }
bool unload(Module module) { return dlclose(module) == 0; }
bool isLoaded() {
  void* module = dlopen(LIBRARY_FILE, RTLD_NOW | RTLD_NOLOAD);
  if (module != nullptr) dlclose(module);
  return module != nullptr;
}
void* find(Module module, const char* name) { return dlsym(module, name); }
/// What follows ".so." in the name of the file.
std::string versionOfFile() {
  const std::string name = LIBRARY_FILE;
  const std::string ending = ".so.";
  const auto found = name.rfind(ending);
  return found == std::string::npos ? "none" : name.substr(found + ending.size());
}
#endif

/// dibkit::Version, as the compiler decorates it.
#if !defined(_MSC_VER)
constexpr const char* version = "_ZN6dibkit7VersionEv";
#elif defined(_WIN64)
constexpr const char* version = "?Version@dibkit@@YAPEBDXZ";
#else
constexpr const char* version = "?Version@dibkit@@YAPBDXZ";
#endif

TEST(Load, ComesAndGoesAsOftenAsTheHostLikes) {
  for (int round = 0; round < 3; ++round) {
    ASSERT_FALSE(isLoaded());
    const Module module = load();
    ASSERT_NE(module, Module{});
    EXPECT_NE(find(module, version), nullptr);
    EXPECT_EQ(find(module, "no such operation"), nullptr);
    EXPECT_TRUE(unload(module));
  }
  EXPECT_FALSE(isLoaded());
}

TEST(Load, TheFileShowsTheVersionThatTheLibraryTells) {
  const Module module = load();
  ASSERT_NE(module, Module{});
  const auto tell = reinterpret_cast<const char* (*)()>(find(module, version));
  ASSERT_NE(tell, nullptr);
  EXPECT_EQ(versionOfFile(), tell());
  unload(module);
}

}  // namespace
