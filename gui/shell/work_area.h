#pragma once
// The area that holds the editor windows. While it is empty it says what is
// open and where to start, instead of showing a blank panel.

#include <QMdiArea>

namespace rk4::gui {

class WorkArea : public QMdiArea {
    Q_OBJECT

  public:
    explicit WorkArea(QWidget* parent);
    void setSummary(const QString& title, const QString& detail);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QString title;
    QString detail;
};

} // namespace rk4::gui
