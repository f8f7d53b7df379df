#pragma once

#include <QMetaMethod>
#include <QMetaObject>
#include <QMetaProperty>
#include <QString>
#include <QStringList>

/// The signals and slots that a class adds to its base, in their order:
/// "signal changed(QWidget*), public slot setSeries(AbstractChartSeries*)".
inline QString ownMethodsText(const QMetaObject &meta)
{
    QStringList texts;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const QString signature = QString::fromLatin1(method.methodSignature());
        if (method.methodType() == QMetaMethod::Signal) {
            texts.append("signal " + signature);
        } else {
            const bool isPublic = method.access() == QMetaMethod::Public;
            texts.append((isPublic ? "public slot " : "private slot ") + signature);
        }
    }
    return texts.join(", ");
}

/// Likewise its properties: "bool backgroundCheckered".
inline QString ownPropertiesText(const QMetaObject &meta)
{
    QStringList texts;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        texts.append(QString("%1 %2").arg(meta.property(i).typeName(), meta.property(i).name()));
    }
    return texts.join(", ");
}
