#pragma once

#include "simulator/reply.h"

#include <QByteArray>

#include <optional>

/// How commands and answers travel over a network connection: one line each, ended by a line feed.
///
///     REQUEST = ID " " COMMAND
///     ANSWER  = ID " ok" | ID " ok " TEXT | ID " error " REASON
///
/// ID is a decimal number of at most nine digits that the client chooses and the answer repeats; 0
/// stands in answers to what is no request. Texts are bytes as they are in the channel, Latin-1;
/// control characters and "%" are written as "%" and two hexadecimal digits.
namespace WireProtocol {

/// The most that a line may have, its end not included. Clients need not send longer ones: the
/// controller knows no such commands.
inline constexpr int longestLine = 4096;
inline constexpr int greatestId = 999999999;
inline constexpr int noRequest = 0;

struct Request
{
    int id = 0;
    QByteArray command;
};

struct Answer
{
    int id = 0;
    Reply reply;
};

/// The line with its end; one that is longer than allowed must not be sent.
QByteArray lineOf(const Request &request);
/// The line with its end. Reasons are cut so that it is never longer than allowed.
QByteArray lineOf(const Answer &answer);

/// @name Reading a line without its end
/// Any bytes may come. @return nothing if the line is of another form
/// @{
std::optional<Request> readRequest(const QByteArray &line);
std::optional<Answer> readAnswer(const QByteArray &line);
/// @}

} // namespace WireProtocol
