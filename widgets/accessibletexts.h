#pragma once

class QDialog;

/// Texts for people who do not see the screen.
namespace AccessibleTexts {

/// Gives each control of @p dialog its What's This text as its accessible description: screen
/// readers tell descriptions, but not all of them tell What's This texts.
void describeControls(const QDialog *dialog);

} // namespace AccessibleTexts
