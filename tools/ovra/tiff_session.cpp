// SPDX-License-Identifier: MIT
#include "tiff_session.h"

#include <unistd.h>

#include <cstdarg>

#include "image.h"

namespace ovra_host {
namespace {

[[gnu::format(printf, 4, 0)]] int KeepError(TIFF*, void* error, const char*, const char* format,
                                            va_list arguments) {
  char message[sizeof(ErrorText::text)];
  std::vsnprintf(message, sizeof(message), format, arguments);
  static_cast<ErrorText*>(error)->Set(message);
  return 1;  // handled: nothing is printed
}

int IgnoreWarning(TIFF*, void*, const char*, const char*, va_list) {
  return 1;
}

}  // namespace

TiffSession::TiffSession(std::FILE* stream, const std::string& path, const char* mode) {
  struct OptionsFreer {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
  };
  const std::unique_ptr<TIFFOpenOptions, OptionsFreer> options(TIFFOpenOptionsAlloc());
  if (!options) return;
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), kMaxImageBytes);
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), KeepError, &error_);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), IgnoreWarning, nullptr);
  const int descriptor = ::dup(::fileno(stream));
  if (descriptor < 0) return;
  tiff_.reset(TIFFFdOpenExt(descriptor, path.c_str(), mode, options.get()));
  if (!tiff_) ::close(descriptor);
}

}  // namespace ovra_host
