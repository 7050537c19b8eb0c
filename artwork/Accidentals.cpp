#include "artwork/Accidentals.h"

QPainterPath SharpOutline() {
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRect(3.0, 2.6, 3.0, 23.4);
    path.addRect(9.0, 1.0, 3.0, 23.4);
    for (const double y : {8.7, 17.1}) {
        path.moveTo(0.0, y + 1.4);
        path.lineTo(15.0, y - 1.4);
        path.lineTo(15.0, y + 2.8);
        path.lineTo(0.0, y + 5.6);
        path.closeSubpath();
    }
    return path.simplified();
}

QPainterPath FlatOutline() {
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);
    path.moveTo(0.0, 1.0);
    path.lineTo(3.0, 1.0);
    path.lineTo(3.0, 11.6);
    path.cubicTo(4.6, 10.2, 6.4, 9.5, 8.1, 9.5);
    path.cubicTo(11.8, 9.5, 14.0, 11.7, 14.0, 14.7);
    path.cubicTo(14.0, 19.3, 8.2, 21.6, 0.0, 26.0);
    path.closeSubpath();
    path.moveTo(3.0, 14.9);
    path.lineTo(3.0, 21.0);
    path.cubicTo(7.2, 18.8, 9.7, 17.0, 9.7, 14.9);
    path.cubicTo(9.7, 13.5, 8.7, 12.8, 7.4, 12.8);
    path.cubicTo(5.8, 12.8, 4.2, 13.6, 3.0, 14.9);
    path.closeSubpath();
    return path;
}
