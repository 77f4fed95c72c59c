#pragma once

#include <QString>
#include <QWidget>

namespace brisko {

class AppDelegate;

namespace test {

class DemoRoot;

/// Where the pictures go.
void setPictureFolder(const QString& folder);

/// Lets events and background work go on for that long, in milliseconds.
void settle(int milliseconds = 60);

/// Takes a picture of `widget` as NAME-light.png or NAME-dark.png.
void save(QWidget* widget, const char* name);
/// The same as it is at this moment: nothing that waits in the queues is let through.
void saveNow(QWidget* widget, const char* name);

/// Presses the button of that name in `page`.
void click(QWidget* page, const char* name);

/// Answers the message that comes up next by the button `answer`, after taking its picture (null:
/// none).
void answerNext(const char* picture, const char* answer);

/// Presses the button and answers the message that it brings up, after taking its picture.
void clickAndAnswer(QWidget* page, const char* button, const char* picture, const char* answer);

// The pictures of each module, in the appearance that is set; see Screenshots.cpp.

void takeStatusPictures(AppDelegate& delegate, DemoRoot& root);
void takeJunkPictures(AppDelegate& delegate, DemoRoot& root);
void takeApplicationPictures(AppDelegate& delegate, DemoRoot& root);
void takeDuplicatePictures(AppDelegate& delegate, DemoRoot& root);
void takeLargePictures(AppDelegate& delegate, DemoRoot& root);
void takeDiskPictures(AppDelegate& delegate, DemoRoot& root);
void takeTaskManagerPictures(AppDelegate& delegate, DemoRoot& root);
void takeStartupItemsPictures(AppDelegate& delegate, DemoRoot& root);
void takeShredderPictures(AppDelegate& delegate, DemoRoot& root);
void takeInternetPictures(AppDelegate& delegate, DemoRoot& root);
void takeUpdatePictures(AppDelegate& delegate, DemoRoot& root);
void takeShellPictures(AppDelegate& delegate, DemoRoot& root);

}  // namespace test
}  // namespace brisko
