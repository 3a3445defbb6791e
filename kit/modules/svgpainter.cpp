// Paints SVG with librsvg, as PNG. In a library of its own, since few people want PNG, and what
// librsvg links would multiply the time that the tool takes to start.
#include "drawing/svgpainter.h"
#include <algorithm>
#include <cairo.h>
#include <cmath>
#include <librsvg/rsvg.h>
#include <memory>
#include <mutex>

namespace {

using Ksx::Kit::PaintResult;

constexpr double MaximumPixels = 32.0 * 1024 * 1024;
constexpr double MaximumSide = 16384;

template <auto Free>
struct Freer
{
    template <class Object>
    void operator()(Object* object) const
    {
        Free(object);
    }
};

using Handle = std::unique_ptr<RsvgHandle, Freer<&g_object_unref>>;
using Surface = std::unique_ptr<cairo_surface_t, Freer<&cairo_surface_destroy>>;
using Context = std::unique_ptr<cairo_t, Freer<&cairo_destroy>>;

// Returns the factor that brings a picture to a size that can be painted.
double scaleFor(double width, double height)
{
    return std::min({1.0, MaximumSide / width, MaximumSide / height,
                     std::sqrt(MaximumPixels / (width * height))});
}

cairo_status_t appendTo(void* bytes, const unsigned char* data, unsigned size)
{
    static_cast<QByteArray*>(bytes)->append(reinterpret_cast<const char*>(data),
                                            static_cast<int>(size));
    return CAIRO_STATUS_SUCCESS;
}

} // namespace

extern "C" __attribute__((visibility("default"))) PaintResult ksxPaintSvg(const QByteArray& svg,
                                                                          QByteArray& png)
{
    // A picture takes much memory, so that there is but one at a time.
    static std::mutex mutex;
    const std::lock_guard<std::mutex> lock(mutex);
    const Handle handle(rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(svg.constData()),
                                                  static_cast<gsize>(svg.size()), nullptr));
    double width = 0;
    double height = 0;
    if (handle == nullptr ||
        rsvg_handle_get_intrinsic_size_in_pixels(handle.get(), &width, &height) == 0)
        return PaintResult::TooLarge; // the library takes a million elements
    const double scale = scaleFor(width, height);
    const RsvgRectangle area{0, 0, std::max(1.0, std::floor(width * scale)),
                             std::max(1.0, std::floor(height * scale))};
    const Surface surface(cairo_image_surface_create(
        CAIRO_FORMAT_RGB24, static_cast<int>(area.width), static_cast<int>(area.height)));
    const Context context(cairo_create(surface.get()));
    cairo_set_source_rgb(context.get(), 1, 1, 1);
    cairo_paint(context.get());
    if (rsvg_handle_render_document(handle.get(), context.get(), &area, nullptr) == 0)
        return PaintResult::Failure;
    return cairo_surface_write_to_png_stream(surface.get(), &appendTo, &png) == CAIRO_STATUS_SUCCESS
               ? PaintResult::Success
               : PaintResult::Failure;
}
