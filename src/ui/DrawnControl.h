#pragma once

#include "Theme.h"

#include <QAbstractButton>
#include <QFocusEvent>
#include <QKeyEvent>

#include <type_traits>

// What every control that paints itself needs to know beyond Qt's own
// state: whether the pointer is over it, and whether its focus came from
// the keyboard (only then is the focus ring drawn; a click shows none).
// A button is also pressed by Return and Enter, as by Space.
template<typename Base> class DrawnControl : public Base
{
public:
    using Base::Base;

    bool isHovered() const { return m_hovered; }
    bool showsFocusRing() const { return m_focusRing && this->hasFocus(); }

protected:
    void enterEvent(QEnterEvent *event) override
    {
        m_hovered = true;
        this->update();
        Base::enterEvent(event);
    }

    void leaveEvent(QEvent *event) override
    {
        m_hovered = false;
        this->update();
        Base::leaveEvent(event);
    }

    void focusInEvent(QFocusEvent *event) override
    {
        m_focusRing = Theme::showsFocusRing(event->reason());
        this->update();
        Base::focusInEvent(event);
    }

    void focusOutEvent(QFocusEvent *event) override
    {
        m_focusRing = false;
        this->update();
        Base::focusOutEvent(event);
    }

    void keyPressEvent(QKeyEvent *event) override
    {
        if constexpr (std::is_base_of_v<QAbstractButton, Base>) {
            if (!event->isAutoRepeat() && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
                this->click();
                return;
            }
        }
        Base::keyPressEvent(event);
    }

private:
    bool m_hovered = false;
    bool m_focusRing = false;
};
