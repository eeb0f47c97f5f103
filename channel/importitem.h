#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

class Controller;

/// One configuration that the controller found in what was uploaded to it.
struct ImportItem
{
    QString identifier;  ///< what the import is asked for with; Identifiers::base for the base
    QString owner;       ///< may be empty
    QString description; ///< may be empty
};

/// Reads how the controller describes one item: its identifier, then owner and description, each in
/// single quotes and with a blank before it.
///
///     config20240305140709123 'Lab 2' 'north wall'
///
/// An owner or description that itself holds a blank followed by a single quote is cut there; any
/// other single quote is lost. A line without quotes is an identifier alone.
ImportItem parseImportItem(const QString &line);

/// What became of the question for the items.
enum class ImportOffer {
    Read,             ///< the items are listed
    NoAnswer,         ///< the controller did not answer
    NotConfigurations ///< what was uploaded does not hold configurations
};

/// Asks the controller what the data uploaded before holds, item by item.
///
/// An item that it does not describe when asked stands in the list with the answer before. An
/// announcement of more than ::maxAnsweredCount is not believed.
///
/// @param lines  replaced by the descriptions, in the controller's order and the base configuration
///               included, when the result is Read; left alone otherwise
ImportOffer queryImportItems(const Controller &controller, QVector<QByteArray> *lines);
