#include "adapters/qt/Symbols.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>
#include <QPolygonF>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <utility>

namespace dunmora {

namespace {

/// The drawings stand in a square of so many units, with some of them left free at every side:
/// styles put the text beside an icon close to its edge.
constexpr double kUnits = 24;
constexpr double kFree = 1.5;
constexpr double kPen = 1.8;
constexpr double kMarkPen = 2.6;

constexpr QColor kAmber(0xf2, 0xb0, 0x1e);
constexpr QColor kRed(0xd1, 0x34, 0x38);
constexpr QColor kBlue(0x2f, 0x6f, 0xc4);
constexpr QColor kDarkInk(0x2b, 0x20, 0x00);

struct Symbol {
    /// Drawn with a pen, in the colour of the texts or of the mark on a sign.
    QPainterPath lines;
    /// Filled below the lines; empty where the symbol is no sign.
    QPainterPath sign;
    QColor signColor;
    QColor ink;
};

void addLine(QPainterPath& path, std::initializer_list<QPointF> points)
{
    path.addPolygon(QPolygonF(QList<QPointF>(points)));
}

void addDot(QPainterPath& path, QPointF place)
{
    // A line without length is drawn as the round end of the pen.
    addLine(path, {place, place + QPointF(0, 0.01)});
}

Symbol reload()
{
    constexpr double kBegin = 340.5;
    constexpr double kSpan = -295.5;
    Symbol symbol;
    const QRectF circle(3, 3, 18, 18);
    symbol.lines.arcMoveTo(circle, kBegin);
    symbol.lines.arcTo(circle, kBegin, kSpan);
    symbol.lines.lineTo(22, 9.5);
    addLine(symbol.lines, {{22, 4}, {22, 9.5}, {16.5, 9.5}});
    return symbol;
}

Symbol trash()
{
    Symbol symbol;
    addLine(symbol.lines, {{3.5, 6}, {20.5, 6}});
    addLine(symbol.lines, {{9, 6}, {9, 3}, {15, 3}, {15, 6}});
    addLine(symbol.lines, {{5.5, 6}, {6.5, 21}, {17.5, 21}, {18.5, 6}});
    addLine(symbol.lines, {{10, 10.5}, {10.3, 16.5}});
    addLine(symbol.lines, {{14, 10.5}, {13.7, 16.5}});
    return symbol;
}

Symbol folder()
{
    Symbol symbol;
    addLine(symbol.lines,
            {{2.5, 19.5}, {2.5, 4.5}, {9, 4.5}, {11.5, 7.5}, {21.5, 7.5}, {21.5, 19.5}});
    symbol.lines.lineTo(2.5, 19.5);
    return symbol;
}

Symbol magnifier()
{
    Symbol symbol;
    symbol.lines.addEllipse(QPointF(10.5, 10.5), 7, 7);
    addLine(symbol.lines, {{15.5, 15.5}, {21, 21}});
    return symbol;
}

Symbol door()
{
    Symbol symbol;
    addLine(symbol.lines, {{10, 3.5}, {3.5, 3.5}, {3.5, 20.5}, {10, 20.5}});
    addLine(symbol.lines, {{9, 12}, {20.5, 12}});
    addLine(symbol.lines, {{16, 7.5}, {20.5, 12}, {16, 16.5}});
    return symbol;
}

Symbol cross()
{
    Symbol symbol;
    addLine(symbol.lines, {{6.5, 6.5}, {17.5, 17.5}});
    addLine(symbol.lines, {{17.5, 6.5}, {6.5, 17.5}});
    return symbol;
}

void addLetterI(QPainterPath& path)
{
    addLine(path, {{12, 11.5}, {12, 17}});
    addDot(path, {12, 7.3});
}

Symbol about()
{
    Symbol symbol;
    symbol.lines.addEllipse(QPointF(12, 12), 9.5, 9.5);
    addLetterI(symbol.lines);
    return symbol;
}

Symbol disc(const QColor& color)
{
    Symbol symbol;
    symbol.sign.addEllipse(QPointF(12, 12), 10.5, 10.5);
    symbol.signColor = color;
    symbol.ink = Qt::white;
    return symbol;
}

Symbol information()
{
    auto symbol = disc(kBlue);
    addLetterI(symbol.lines);
    return symbol;
}

Symbol loss()
{
    auto symbol = disc(kRed);
    addLine(symbol.lines, {{8.2, 8.2}, {15.8, 15.8}});
    addLine(symbol.lines, {{15.8, 8.2}, {8.2, 15.8}});
    return symbol;
}

Symbol doubt()
{
    Symbol symbol;
    addLine(symbol.sign, {{12, 3}, {21.8, 20.5}, {2.2, 20.5}});
    symbol.sign.closeSubpath();
    symbol.signColor = kAmber;
    symbol.ink = kDarkInk;
    addLine(symbol.lines, {{12, 9.5}, {12, 14}});
    addDot(symbol.lines, {12, 17.8});
    return symbol;
}

Symbol symbolNamed(const QString& name)
{
    struct Named {
        QLatin1String name;
        Symbol (*make)();
    };
    static constexpr std::array kSymbols{
        Named{QLatin1String("about"), about},    Named{QLatin1String("close"), cross},
        Named{QLatin1String("delete"), trash},   Named{QLatin1String("doubt"), doubt},
        Named{QLatin1String("find"), magnifier}, Named{QLatin1String("information"), information},
        Named{QLatin1String("loss"), loss},      Named{QLatin1String("open"), folder},
        Named{QLatin1String("quit"), door},      Named{QLatin1String("reload"), reload},
    };
    const auto* const found =
        std::find_if(kSymbols.begin(), kSymbols.end(),
                     [&name](const auto& symbol) { return symbol.name == name; });
    if (found == kSymbols.end()) {
        throw std::logic_error("there is no symbol named " + name.toStdString());
    }
    return found->make();
}

class SymbolEngine final : public QIconEngine {
public:
    explicit SymbolEngine(Symbol symbol) : symbol_(std::move(symbol)) {}

    QIconEngine* clone() const override { return new SymbolEngine(symbol_); }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State /*state*/) override
    {
        const double side = std::min(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.x() + (rect.width() - side) / 2,
                           rect.y() + (rect.height() - side) / 2);
        painter->scale(side / (kUnits + 2 * kFree), side / (kUnits + 2 * kFree));
        painter->translate(kFree, kFree);
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const bool isSign = !symbol_.sign.isEmpty();
        if (isSign) {
            // A corner is as round as the pen.
            painter->setPen(pen(symbol_.signColor, kPen));
            painter->setBrush(symbol_.signColor);
            painter->drawPath(symbol_.sign);
        }
        const auto ink =
            isSign ? symbol_.ink : QApplication::palette().color(group, QPalette::WindowText);
        painter->setPen(pen(ink, isSign ? kMarkPen : kPen));
        painter->setBrush(Qt::NoBrush);
        painter->drawPath(symbol_.lines);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap drawn(size);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return drawn;
    }

private:
    static QPen pen(const QColor& color, double width)
    {
        return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
    }

    Symbol symbol_;
};

}  // namespace

QIcon symbolIcon(const QString& name)
{
    // The icon owns its engine.
    return QIcon(new SymbolEngine(symbolNamed(name)));
}

}  // namespace dunmora
