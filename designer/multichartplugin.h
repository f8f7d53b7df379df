#pragma once

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

/**
 * Makes MultiChart known to Qt Designer's widget box, and to QUiLoader.
 *
 * The program that loads the plug-in owns it, and each widget made by it belongs to its parent. A
 * chart comes without a model: in a form it is an empty legend, and the program that shows the form
 * calls setModel(). GUI thread only.
 */
class MultiChartPlugin : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QDesignerCustomWidgetInterface_iid)
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;

    /// With angle brackets, as uic shall write it. Found wherever the library is.
    QString includeFile() const override;
    QIcon icon() const override;

    /// False: the panes are the model's business, and nothing may be dropped into the splitter.
    bool isContainer() const override;

    /// A size at which legend and plots can be told apart. The object name chooses where the
    /// settings are kept, so that a form with two charts gets two places.
    QString domXml() const override;

    /// Remembers that this is Designer; QUiLoader does not call it.
    void initialize(QDesignerFormEditorInterface *core) override;
    bool isInitialized() const override;

    /// In Designer, where nobody places the toolbar, it dies with the chart.
    QWidget *createWidget(QWidget *parent) override;

private:
    bool m_initialized = false;
};
