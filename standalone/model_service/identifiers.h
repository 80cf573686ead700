#pragma once

#include <QString>

#include <functional>
#include <string>

/// Names and ids at the boundary of the model service. No state, any thread.
namespace standalone {

/// A fresh uuid, without braces.
std::string newUuid();

/// True for an id that a block may bear: not empty, and not the "0", "1" or "2" of a flow.
bool isBlockUuid(const std::string& id);

/// The flow that a parent id stands for: 0, 1 or 2 for "0", "1" or "2", else -1.
int flowOfParentId(const std::string& id);

/// Text between the service's UTF-8 and the facade's strings.
QString toText(const std::string& utf8);
std::string toUtf8(const QString& text);

/// Applet names between the local 8-bit encoding of the contract and QString.
QString toAppName(const std::string& local8Bit);
std::string toLocalName(const QString& appName);

/// @p wanted if it is free, else the same with a number behind an underscore, counted on from the
/// one it has: "retry" gives "retry_1", "Sequence_0" gives "Sequence_1". A name that had to be
/// changed has at most 20 characters.
QString freeName(const QString& wanted, const std::function<bool(const QString&)>& isTaken);

} // namespace standalone
