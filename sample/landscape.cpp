#include "sample/landscape.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>

#include "sample/seeded_random.h"

namespace orvandel {

namespace {

struct Light {
  QRgb zenith, horizon, sun, hill;
  bool isNight;
};

const Light kLights[] = {
    {0xff2f74c0, 0xffcfe6f5, 0xfffff6c8, 0xff3f7d3a, false},  // noon
    {0xff3b4a8f, 0xffffa45c, 0xffffe08a, 0xff57405a, false},  // sunset
    {0xff6fa3c8, 0xfffbd9c0, 0xfffff0dc, 0xff5b7f6b, false},  // dawn
    {0xff0b1433, 0xff3c4f86, 0xfff3f1e0, 0xff16263a, true},   // night
    {0xff5b8fb0, 0xffe9efe6, 0xfffffbe6, 0xff8a8f3c, false},  // harvest
    {0xff7d6aa8, 0xfff6c1cf, 0xfffff3e0, 0xff3d5a78, false},  // mist
};

QColor mix(const QColor& a, const QColor& b, double share) {
  const auto part = [share](int x, int y) { return static_cast<int>(x + (y - x) * share); };
  return {part(a.red(), b.red()), part(a.green(), b.green()), part(a.blue(), b.blue())};
}

class Landscape {
 public:
  Landscape(QImage& image, int seed)
      : m_painter(&image),
        m_random(static_cast<quint32>(seed)),
        m_light(m_random.pick(kLights)),
        m_width(image.width()),
        m_height(image.height()) {
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.setPen(Qt::NoPen);
  }

  void paint() {
    paintSky();
    if (m_light.isNight) paintStars();
    paintSun();
    if (!m_light.isNight) paintClouds();
    const int layers = m_random.between(3, 5);
    for (int i = 0; i < layers; ++i) paintHills(i, layers);
    if (m_random.chance(40)) paintLake();
    if (m_random.chance(65)) paintWood();
  }

 private:
  void paintSky() {
    QLinearGradient sky(0, 0, 0, m_height * 0.75);
    sky.setColorAt(0, QColor(m_light.zenith));
    sky.setColorAt(1, QColor(m_light.horizon));
    m_painter.fillRect(QRectF(0, 0, m_width, m_height), sky);
  }

  void paintStars() {
    m_painter.setBrush(QColor(255, 255, 240, 200));
    for (int i = 0; i < 60; ++i) {
      const QPointF at(m_random.real(0, m_width), m_random.real(0, m_height * 0.5));
      const double radius = m_random.real(0.0008, 0.003) * m_width;
      m_painter.drawEllipse(at, radius, radius);
    }
  }

  void paintSun() {
    const QPointF at(m_random.real(0.15, 0.85) * m_width, m_random.real(0.15, 0.5) * m_height);
    const double radius = m_random.real(0.04, 0.09) * m_width;
    QRadialGradient glow(at, radius * 4);
    QColor color(m_light.sun);
    color.setAlpha(m_light.isNight ? 70 : 150);
    glow.setColorAt(0, color);
    color.setAlpha(0);
    glow.setColorAt(1, color);
    m_painter.setBrush(glow);
    m_painter.drawEllipse(at, radius * 4, radius * 4);
    m_painter.setBrush(QColor(m_light.sun));
    m_painter.drawEllipse(at, radius, radius);
  }

  void paintClouds() {
    const int clouds = m_random.below(4);
    for (int i = 0; i < clouds; ++i) {
      const double x = m_random.real(0, m_width);
      const double y = m_random.real(0.08, 0.35) * m_height;
      const double size = m_random.real(0.03, 0.07) * m_width;
      QPainterPath cloud;
      cloud.setFillRule(Qt::WindingFill);
      for (int puff = 0; puff < 5; ++puff) {
        const double radius = size * (puff == 2 ? 1.0 : m_random.real(0.5, 0.85));
        cloud.addEllipse(QPointF(x + (puff - 2) * size * 0.8, y), radius, radius * 0.55);
      }
      m_painter.setBrush(QColor(255, 255, 255, 170));
      m_painter.drawPath(cloud.simplified());
    }
  }

  void paintHills(int layer, int layers) {
    const double depth = (layer + 1.0) / layers;  // 1 is the nearest
    const double base = (0.48 + 0.42 * depth) * m_height;
    const double swing = m_random.real(0.04, 0.11) * m_height;
    const double waves = m_random.real(1.2, 2.8) * 6.283 / m_width;
    const double shift = m_random.real(0, 6.283);
    const double ripples = waves * m_random.real(2.2, 3.4);
    QPainterPath hill(QPointF(0, m_height));
    for (int x = 0; x <= m_width; x += 2) {
      hill.lineTo(
          x, base - swing * std::sin(waves * x + shift) - swing * 0.35 * std::sin(ripples * x + shift * 2));
    }
    hill.lineTo(m_width + 2, m_height);
    hill.closeSubpath();
    const QColor near = mix(QColor(m_light.hill), QColor(m_light.hill).darker(170), depth * 0.7);
    const QColor color = mix(QColor(m_light.horizon), near, 0.25 + 0.75 * depth);
    QLinearGradient slope(0, base - swing, 0, m_height);
    slope.setColorAt(0, color);
    slope.setColorAt(1, color.darker(125));
    m_painter.setBrush(slope);
    m_painter.drawPath(hill);
  }

  void paintLake() {
    const QPointF at(m_random.real(0.25, 0.75) * m_width, m_random.real(0.88, 0.93) * m_height);
    const double width = m_random.real(0.15, 0.28) * m_width;
    const double height = 0.05 * m_height;
    QLinearGradient water(0, at.y() - height, 0, at.y() + height);
    water.setColorAt(0, QColor(m_light.horizon));
    water.setColorAt(1, QColor(m_light.zenith));
    m_painter.setBrush(water);
    m_painter.drawEllipse(at, width, height);
    if (!m_random.chance(50)) return;
    const double sail = 0.09 * m_height;  // a boat
    m_painter.setBrush(QColor(0xff, 0xfa, 0xf0));
    m_painter.drawPolygon(QPolygonF(
        {at + QPointF(0, -sail), at + QPointF(0, -sail * 0.15), at + QPointF(sail * 0.55, -sail * 0.15)}));
    m_painter.setBrush(QColor(0x8c, 0x3b, 0x2a));
    m_painter.drawPolygon(
        QPolygonF({at + QPointF(-sail * 0.45, -sail * 0.1), at + QPointF(sail * 0.6, -sail * 0.1),
                   at + QPointF(sail * 0.4, sail * 0.1), at + QPointF(-sail * 0.3, sail * 0.1)}));
  }

  void paintWood() {
    const int trees = m_random.between(4, 16);
    const QColor dark = QColor(m_light.hill).darker(190);
    for (int i = 0; i < trees; ++i) {
      const double x = m_random.real(0, m_width);
      const double foot = m_random.real(0.9, 1.02) * m_height;
      const double tall = m_random.real(0.09, 0.17) * m_height;
      m_painter.setBrush(mix(dark, QColor(m_light.hill), m_random.real(0, 0.4)));
      for (int tier = 0; tier < 3; ++tier) {
        const double top = foot - tall + tier * tall * 0.25;
        const double half = tall * (0.14 + 0.07 * tier);
        m_painter.drawPolygon(QPolygonF(
            {QPointF(x, top), QPointF(x - half, top + tall * 0.42), QPointF(x + half, top + tall * 0.42)}));
      }
    }
  }

  QPainter m_painter;
  SeededRandom m_random;
  Light m_light;
  int m_width;
  int m_height;
};

}  // namespace

QImage paintLandscape(int seed, int width, int height) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(Qt::white);
  Landscape(image, seed).paint();
  return image;
}

}  // namespace orvandel
