// Painting a laid-out elevation with QPainter, onto SVG or PNG alike.

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QSvgGenerator>

#include <cmath>

#include "seluvorne/drawing.h"
#include "seluvorne/error.h"
#include "ui/application.h"
#include "ui/japanese_font.h"

namespace seluvorne::drawing {
namespace {

// Paper sizes of the texts and marks, in paper mm, whatever the scale.
constexpr double kTextHeight = 3.0;
constexpr double kTitleHeight = 4.5;
constexpr double kTick = 1.2;

// Model mm to device pixels: paper mm = model mm / scale, pixels = paper mm
// times the device's pixels per paper mm.
class Sheet {
 public:
  Sheet(const Box& extent, double scale, double pixels_per_mm)
      : extent_(extent), factor_(pixels_per_mm / scale), pixels_per_mm_(pixels_per_mm) {}

  QSize size() const {
    return QSize(int(std::ceil((extent_.right - extent_.left) * factor_)),
                 int(std::ceil((extent_.top - extent_.bottom) * factor_)));
  }
  QPointF operator()(const Point& point) const {
    return {(point.x - extent_.left) * factor_, (extent_.top - point.y) * factor_};
  }
  double paper(double millimetres) const { return millimetres * pixels_per_mm_; }

 private:
  Box extent_;
  double factor_;
  double pixels_per_mm_;
};

QPolygonF Polygon(const Sheet& sheet, const std::vector<Point>& points) {
  QPolygonF polygon;
  for (const Point& point : points)
    polygon << sheet(point);
  return polygon;
}

void Text(QPainter& painter, const QPointF& centre, const std::string& text, double height) {
  const QString shown = QString::fromStdString(text);
  const QRectF box(centre.x() - height * 40, centre.y() - height, height * 80, height * 2);
  painter.drawText(box, Qt::AlignCenter, shown);
}

void Paint(QPainter& painter, const ElevationLayout& layout, const Sheet& sheet) {
  painter.setRenderHint(QPainter::Antialiasing);
  QFont font = ui::JapaneseFont("Noto Sans CJK JP", 10);
  font.setPixelSize(std::max(1, int(sheet.paper(kTextHeight))));
  painter.setFont(font);
  const QPen outline(Qt::black, sheet.paper(0.35));
  const QPen thin(Qt::black, sheet.paper(0.18));
  const QPen centre_line(QColor(90, 90, 90), sheet.paper(0.18), Qt::DashDotLine);

  painter.setPen(outline);
  painter.setBrush(QColor(215, 215, 215));
  for (const Box& column : layout.columns)
    painter.drawRect(
        QRectF(sheet({column.left, column.top}), sheet({column.right, column.bottom})));

  painter.setBrush(QColor(245, 245, 245));
  for (const auto& beam : layout.beams)
    painter.drawPolygon(Polygon(sheet, beam));
  painter.setBrush(QColor(200, 200, 200));
  for (const auto& haunch : layout.haunches)
    painter.drawPolygon(Polygon(sheet, haunch));

  painter.setPen(centre_line);
  for (std::size_t k = 0; k < layout.columns.size(); ++k) {
    const Box& column = layout.columns[k];
    const double middle = (column.left + column.right) / 2;
    painter.drawLine(sheet({middle, column.bottom}), sheet({middle, column.top}));
  }

  painter.setPen(thin);
  painter.setBrush(Qt::NoBrush);
  for (const Point& point : layout.change_points) {
    const QPointF at = sheet(point);
    const double r = sheet.paper(kTick);
    painter.drawLine(at + QPointF(0, -2 * r), at + QPointF(0, 2 * r));
    painter.drawEllipse(at, r / 2, r / 2);
  }
  for (const Label& label : layout.grid_labels) {
    const QPointF at = sheet(label.at);
    const double r = sheet.paper(kTextHeight * 1.3);
    painter.drawEllipse(at, r, r);
    Text(painter, at, label.text, sheet.paper(kTextHeight));
  }
  for (const Label& label : layout.beam_labels)
    Text(painter, sheet(label.at), label.text, sheet.paper(kTextHeight));
  for (const Label& label : layout.level_labels)
    Text(painter, sheet(label.at), label.text, sheet.paper(kTextHeight * 0.8));

  for (const Dimension& dimension : layout.dimensions) {
    const QPointF from = sheet({dimension.x0, dimension.y});
    const QPointF to = sheet({dimension.x1, dimension.y});
    const double tick = sheet.paper(kTick);
    painter.drawLine(from, to);
    for (const QPointF& end : {from, to}) {
      painter.drawLine(end + QPointF(-tick, tick), end + QPointF(tick, -tick));
      painter.drawLine(end + QPointF(0, -tick), end + QPointF(0, tick));
    }
    Text(painter, (from + to) / 2 - QPointF(0, sheet.paper(kTextHeight) * 0.9), dimension.text,
         sheet.paper(kTextHeight));
  }

  QFont title = font;
  title.setPixelSize(std::max(1, int(sheet.paper(kTitleHeight))));
  painter.setFont(title);
  QPointF line = sheet({layout.extent.left, layout.extent.bottom}) +
                 QPointF(sheet.paper(6), -sheet.paper(kTitleHeight * 2.6));
  for (const std::string& text : layout.title) {
    painter.drawText(line, QString::fromStdString(text));
    line += QPointF(0, sheet.paper(kTitleHeight * 1.4));
  }
}

}  // namespace

void WriteElevation(const BeamElevation& beam, const std::filesystem::path& file, double scale) {
  if (!(scale > 0)) RaiseExplained(5, "", "the scale must be above 0", "SeluVorneDS.drawing");
  const std::string extension = file.extension().string();
  const bool svg = extension == ".svg" || extension == ".SVG";
  const bool png = extension == ".png" || extension == ".PNG";
  if (!svg && !png)
    RaiseExplained(5, "", "a drawing is written as .svg or .png: " + file.string(),
                   "SeluVorneDS.drawing");
  const ElevationLayout layout = LayoutElevation(beam);
  ui::EnsureApplication();

  const QString name = QString::fromStdString(file.string());
  if (svg) {
    // 254 dots per inch: ten device units to the paper millimetre.
    const Sheet sheet(layout.extent, scale, 10.0);
    QSvgGenerator generator;
    generator.setFileName(name);
    generator.setResolution(254);
    generator.setSize(sheet.size());
    generator.setViewBox(QRect(QPoint(0, 0), sheet.size()));
    generator.setTitle(QString::fromStdString(layout.title.front()));
    QPainter painter;
    if (!painter.begin(&generator)) RaiseExplained(75, "", file.string(), "SeluVorneDS.drawing");
    Paint(painter, layout, sheet);
    painter.end();
  } else {
    const Sheet sheet(layout.extent, scale, 5.0);
    QImage image(sheet.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    Paint(painter, layout, sheet);
    painter.end();
    if (!image.save(name, "PNG")) RaiseExplained(75, "", file.string(), "SeluVorneDS.drawing");
  }
}

}  // namespace seluvorne::drawing
