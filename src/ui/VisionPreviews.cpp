#include "VisionPreviews.h"

#include "Theme.h"

#include <QHBoxLayout>
#include <QPainter>

namespace {

// One deficiency: its short name in the text color as seen on the
// background as seen, over the ratio of the two.
class VisionTile : public QWidget
{
public:
    explicit VisionTile(QWidget *parent)
        : QWidget(parent)
    {
        setFixedHeight(44);
    }

    void setSeen(const ContrastReport::Seen &seen)
    {
        m_seen = seen;
        const QString name = ColorVision::name(seen.deficiency);
        setAccessibleName(name);
        const QString grade = wcagLabel(wcagLevel(seen.ratio));
        setAccessibleDescription(
            tr("%1 on %2, ratio %3, %4")
                .arg(seen.foreground, seen.background, contrastRatioText(seen.ratio), grade));
        setToolTip(name + u'\n' + accessibleDescription());
        update();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        static const QString shortNames[] = {tr("Protan"), tr("Deutan"), tr("Tritan"), tr("Mono")};
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF sample(0.5, 0.5, width() - 1.0, 25);
        Theme::paintRoundedCard(painter, sample, 6, QColor::fromString(m_seen.background),
                                QColor(255, 255, 255, 77), 0.5);
        painter.setFont(Theme::font(11, QFont::DemiBold));
        painter.setPen(QColor::fromString(m_seen.foreground));
        painter.drawText(sample, Qt::AlignCenter, shortNames[int(m_seen.deficiency)]);
        painter.setFont(Theme::monospaceFont(11, QFont::DemiBold));
        painter.setPen(wcagColor(wcagLevel(m_seen.ratio)));
        painter.drawText(QRectF(0, sample.bottom() + 2, width(), height() - sample.bottom() - 2),
                         Qt::AlignCenter, contrastRatioText(m_seen.ratio));
    }

private:
    ContrastReport::Seen m_seen{};
};

} // namespace

VisionPreviews::VisionPreviews(QWidget *parent)
    : QWidget(parent)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    for (int i = 0; i < int(std::size(ColorVision::all)); ++i)
        row->addWidget(new VisionTile(this), 1);
}

void VisionPreviews::setReport(const ContrastReport &report)
{
    for (int i = 0; i < layout()->count() && i < report.seen.size(); ++i)
        static_cast<VisionTile *>(layout()->itemAt(i)->widget())->setSeen(report.seen.at(i));
}
