#include "win32/png.h"

#include <windows.h>

#include <wincodec.h>

#include "base/safe_file.h"
#include "contract/win32/com_ptr.h"

namespace kelvane::win32 {

namespace {

using com::ComPtr;

/// The bytes that a stream in memory holds.
std::string contentOf(IStream* stream) {
  HGLOBAL memory = nullptr;
  STATSTG facts{};
  if (FAILED(GetHGlobalFromStream(stream, &memory)) ||
      FAILED(stream->Stat(&facts, STATFLAG_NONAME)))
    return {};
  const auto size = static_cast<std::size_t>(facts.cbSize.QuadPart);
  std::string bytes(static_cast<const char*>(GlobalLock(memory)), size);
  GlobalUnlock(memory);
  return bytes;
}

HRESULT encode(IStream* stream, std::span<const std::uint32_t> pixels, UINT width, UINT height) {
  ComPtr<IWICImagingFactory> factory;
  ComPtr<IWICBitmapEncoder> encoder;
  ComPtr<IWICBitmapFrameEncode> frame;
  WICPixelFormatGUID format = GUID_WICPixelFormat32bppBGR;
  HRESULT result = CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                    IID_IWICImagingFactory, factory.receiveAny());
  const auto then = [&result](auto step) {
    if (SUCCEEDED(result)) result = step();
  };
  then([&] { return factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.receive()); });
  then([&] { return encoder->Initialize(stream, WICBitmapEncoderNoCache); });
  then([&] { return encoder->CreateNewFrame(frame.receive(), nullptr); });
  then([&] { return frame->Initialize(nullptr); });
  then([&] { return frame->SetSize(width, height); });
  then([&] { return frame->SetPixelFormat(&format); });
  // It may have chosen another format: pixels are handed over as they are, or not at all.
  if (SUCCEEDED(result) && !IsEqualGUID(format, GUID_WICPixelFormat32bppBGR) &&
      !IsEqualGUID(format, GUID_WICPixelFormat32bppBGRA))
    result = WINCODEC_ERR_UNSUPPORTEDPIXELFORMAT;
  then([&] {
    auto* bytes = reinterpret_cast<BYTE*>(const_cast<std::uint32_t*>(pixels.data()));
    return frame->WritePixels(height, width * 4, static_cast<UINT>(pixels.size_bytes()), bytes);
  });
  then([&] { return frame->Commit(); });
  then([&] { return encoder->Commit(); });
  return result;
}

}  // namespace

std::string pngOf(std::span<const std::uint32_t> pixels, int width, int height, std::string& why) {
  ComPtr<IStream> stream;
  HRESULT result = CreateStreamOnHGlobal(nullptr, TRUE, stream.receive());
  if (SUCCEEDED(result))
    result = encode(stream.get(), pixels, static_cast<UINT>(width), static_cast<UINT>(height));
  std::string bytes = SUCCEEDED(result) ? contentOf(stream.get()) : std::string();
  if (bytes.empty()) why = systemWords({static_cast<int>(result), std::system_category()});
  return bytes;
}

}  // namespace kelvane::win32
