#pragma once

class Controller;
class QString;

/// Sends the configuration file at @p path to the controller, which finds out for itself what the
/// file holds.
///
/// The file travels in numbered chunks of TransferEncoding::chunkSize bytes. They are read one at a
/// time, so memory does not grow with the file. Whether the controller took them shows only
/// afterwards, in what it offers for import: a refused chunk does not end the upload. What an
/// upload that broke off has left on the controller is discarded by Controller::cancelUpload(),
/// which is due before each upload.
///
/// Only regular files are readable, and only up to as many chunks as can be numbered (some 200 GB).
/// What went wrong is reported to the host, except that nothing is said of an empty file.
/// @return 0 if every byte was sent; -1 if the file is empty, or broke off while it was read; -2 if
/// it cannot be read, in which case nothing was sent
int uploadConfigurationFile(const Controller &controller, const QString &path);
