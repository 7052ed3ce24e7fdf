// Painting a fingerprint picture with cairo: the squares of the knotted subchains clipped to
// the triangle, the axes with residue numbers, the legend and the title, all placed by LayOut.
// Built as the drawing module that `tresk plot` loads, so that no other command pays for
// loading cairo and the X11 libraries it pulls in.
#include "cli/plot.hpp"

#include <cairo-svg.h>
#include <cairo.h>

#include <cctype>

namespace {

void Text(cairo_t* cr, double x, double y, const std::string& s, double alignX, double alignY) {
  cairo_text_extents_t e;
  cairo_text_extents(cr, s.c_str(), &e);
  cairo_move_to(cr, x - e.x_bearing - alignX * e.width, y - e.y_bearing - alignY * e.height);
  cairo_show_text(cr, s.c_str());
}

void TrianglePath(cairo_t* cr, const Frame& fr) {
  cairo_move_to(cr, fr.X(0), fr.Y(0));
  cairo_line_to(cr, fr.X(0), fr.Y(fr.atoms));
  cairo_line_to(cr, fr.X(fr.atoms), fr.Y(fr.atoms));
  cairo_close_path(cr);
}

void DrawSquares(cairo_t* cr, const PlotLayout& l) {
  // Only the triangle first <= last is painted.
  cairo_save(cr);
  TrianglePath(cr, l.frame);
  cairo_clip(cr);
  cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
  for (const Square& s : l.squares) {
    cairo_rectangle(cr, s.x, s.y, s.width, s.height);
    cairo_set_source_rgb(cr, s.colour.r, s.colour.g, s.colour.b);
    cairo_fill(cr);
  }
  cairo_restore(cr);
}

void DrawAxes(cairo_t* cr, const PlotLayout& l) {
  const Frame& fr = l.frame;
  const double font = l.font;
  cairo_set_source_rgb(cr, 0, 0, 0);
  cairo_set_line_width(cr, 1.0);
  TrianglePath(cr, fr);
  cairo_stroke(cr);

  cairo_set_font_size(cr, font);
  const double tick = font * 0.5;
  for (const Tick& t : l.ticks) {
    cairo_move_to(cr, fr.X(t.position), fr.Y(0));
    cairo_line_to(cr, fr.X(t.position), fr.Y(0) + tick);
    cairo_move_to(cr, fr.X(0), fr.Y(t.position));
    cairo_line_to(cr, fr.X(0) - tick, fr.Y(t.position));
    cairo_stroke(cr);
    Text(cr, fr.X(t.position), fr.Y(0) + tick * 1.6, std::to_string(t.id), 0.5, 0.0);
    Text(cr, fr.X(0) - tick * 1.6, fr.Y(t.position), std::to_string(t.id), 1.0, 0.5);
  }
  cairo_set_font_size(cr, font * 1.15);
  Text(cr, fr.X(fr.atoms / 2.0), fr.Y(0) + font * 3.2, "first residue of the subchain", 0.5, 0);
  cairo_save(cr);
  cairo_translate(cr, fr.left - font * 4.6, fr.Y(fr.atoms / 2.0));
  cairo_rotate(cr, -1.5707963267948966);
  Text(cr, 0, 0, "last residue of the subchain", 0.5, 0.5);
  cairo_restore(cr);
}

void DrawLegend(cairo_t* cr, const PlotLayout& l) {
  const Legend& g = l.legend;
  const double font = l.font;
  cairo_set_font_size(cr, font * 1.1);
  cairo_set_source_rgb(cr, 0, 0, 0);
  Text(cr, g.x, g.titleY, "knot type", 0, 0);
  cairo_set_font_size(cr, font);
  for (std::size_t k = 0; k < l.types.size(); ++k) {
    const Rgb c = KnotColour(l.types[k], static_cast<int>(k));
    cairo_rectangle(cr, g.x, g.entryY[k], g.box, g.box);
    cairo_set_source_rgb(cr, c.r, c.g, c.b);
    cairo_fill_preserve(cr);
    cairo_set_source_rgb(cr, 0, 0, 0);
    cairo_set_line_width(cr, 0.5);
    cairo_stroke(cr);
    Text(cr, g.x + g.box * 1.5, g.entryY[k] + g.box / 2, LegendLabel(l.types[k]), 0, 0.5);
  }
  if (l.types.empty()) {
    Text(cr, g.x, g.afterEntries, "no knotted subchain", 0, 0);
    return;
  }
  // Intensity scale, drawn in the first knot's colour.
  cairo_set_font_size(cr, font * 1.1);
  Text(cr, g.x, g.scaleTitleY, "probability", 0, 0);
  cairo_set_font_size(cr, font);
  const Rgb base = KnotColour(l.types.front(), 0);
  const double y = g.scaleY, height = g.scaleHeight;
  const int steps = 50;
  for (int s = 0; s < steps; ++s) {
    const Rgb c = Shade(base, 100.0 * (steps - s - 0.5) / steps);
    cairo_rectangle(cr, g.x, y + height * s / steps, g.box, height / steps + 0.5);
    cairo_set_source_rgb(cr, c.r, c.g, c.b);
    cairo_fill(cr);
  }
  cairo_set_source_rgb(cr, 0, 0, 0);
  cairo_rectangle(cr, g.x, y, g.box, height);
  cairo_stroke(cr);
  Text(cr, g.x + g.box * 1.5, y, "100%", 0, 0);
  Text(cr, g.x + g.box * 1.5, y + height / 2, "50%", 0, 0.5);
  Text(cr, g.x + g.box * 1.5, y + height, "0%", 0, 1);
}

bool EndsWith(const std::string& s, const std::string& tail) {
  return s.size() >= tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0;
}

} // namespace

namespace {

std::string DrawFingerprint(const tresk::Fingerprint& fingerprint, const std::string& picturePath,
                            const PlotStyle& style) {
  std::string lower = picturePath;
  for (char& ch : lower)
    ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
  const bool svg = EndsWith(lower, ".svg");
  if (!svg && !EndsWith(lower, ".png"))
    return "the picture must be a .svg or .png file";
  if (fingerprint.atoms < 1)
    return "the fingerprint has no atoms";
  if (style.size < 200 || style.size > 20000)
    return "the picture size must be 200 to 20000";

  const PlotLayout l = LayOut(fingerprint, style);
  cairo_surface_t* surface =
      svg ? cairo_svg_surface_create(picturePath.c_str(), l.width, l.height)
          : cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(l.width),
                                       static_cast<int>(l.height));
  cairo_t* cr = cairo_create(surface);
  cairo_set_source_rgb(cr, 1, 1, 1);
  cairo_paint(cr);
  cairo_select_font_face(cr, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  DrawSquares(cr, l);
  DrawAxes(cr, l);
  DrawLegend(cr, l);
  if (!style.title.empty()) {
    cairo_set_source_rgb(cr, 0, 0, 0);
    cairo_set_font_size(cr, l.font * 1.4);
    Text(cr, l.frame.X(fingerprint.atoms / 2.0), l.frame.top * 0.35, style.title, 0.5, 0.5);
  }

  cairo_status_t status = cairo_status(cr);
  cairo_destroy(cr);
  if (status == CAIRO_STATUS_SUCCESS && !svg)
    status = cairo_surface_write_to_png(surface, picturePath.c_str());
  cairo_surface_finish(surface);
  if (status == CAIRO_STATUS_SUCCESS)
    status = cairo_surface_status(surface);
  cairo_surface_destroy(surface);
  if (status != CAIRO_STATUS_SUCCESS)
    return "cannot write " + picturePath + ": " + cairo_status_to_string(status);
  return "";
}

} // namespace

// The module's one entry point, looked up by name: `error` receives "" or the message.
extern "C" __attribute__((visibility("default"))) void
TreskDrawFingerprint(const tresk::Fingerprint* fingerprint, const std::string* picturePath,
                     const PlotStyle* style, std::string* error) {
  *error = DrawFingerprint(*fingerprint, *picturePath, *style);
}
