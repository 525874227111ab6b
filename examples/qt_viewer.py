"""A simulation inside a Qt window: the viewer draws into the OpenGL context of a widget, beside the controls of the program.

Needs PySide6. On a machine without a display run it in a virtual one, here to leave a picture of the window after 4 s:

xvfb-run -a ./zor run examples/qt_viewer.py --screenShot window.png --stopAfter 4
"""

import argparse
import math
import os
import random
import sys
from collections.abc import Callable

from PySide6.QtCore import Qt, QTimer
from PySide6.QtGui import QCloseEvent, QKeyEvent, QMouseEvent, QSurfaceFormat, QWheelEvent
from PySide6.QtOpenGLWidgets import QOpenGLWidget
from PySide6.QtWidgets import QApplication, QHBoxLayout, QLabel, QMainWindow, QPushButton, QSlider, QVBoxLayout, QWidget

import zor
import zorCollide
import zorOSG
import zorSDK

STEP = 1.0 / 120  # s
STEPS_A_FRAME = 2
COLOURS = [zor.Vec4f(0.91, 0.35, 0.27, 1), zor.Vec4f(0.96, 0.72, 0.26, 1), zor.Vec4f(0.25, 0.62, 0.56, 1), zor.Vec4f(0.24, 0.47, 0.75, 1)]
BUTTONS = {Qt.MouseButton.LeftButton: 0, Qt.MouseButton.MiddleButton: 1, Qt.MouseButton.RightButton: 2}
MODIFIERS = {
    Qt.KeyboardModifier.ShiftModifier: zorSDK.GuiEventListener.MODKEY_SHIFT,
    Qt.KeyboardModifier.ControlModifier: zorSDK.GuiEventListener.MODKEY_CTRL,
    Qt.KeyboardModifier.AltModifier: zorSDK.GuiEventListener.MODKEY_ALT,
}


class View(QOpenGLWidget):
    """Draws a simulation and hands the mouse and the keyboard on to the viewer."""

    def __init__(self, simulation: zorSDK.Simulation):
        super().__init__()
        self.simulation = simulation
        self.window3d = zorOSG.EmbeddedGLWindow()
        self.can_draw = False
        self.setFocusPolicy(Qt.FocusPolicy.StrongFocus)
        self.setMinimumSize(320, 240)

    def initializeGL(self) -> None:
        self.can_draw = self.window3d.init(0, 0, *self.size_in_pixels())
        if not self.can_draw:  # the log has said why
            QTimer.singleShot(0, lambda: QApplication.exit(1))
            return
        self.window3d.setSimulation(self.simulation)
        decorator = self.window3d.getSceneDecorator()
        decorator.setBackgroundColor(zor.Vec3(0.80, 0.86, 0.92), zor.Vec3(0.36, 0.46, 0.58))
        for body in self.simulation.getRigidBodies():
            self.show_body(body, zor.Vec4f(0.62, 0.64, 0.66, 1))
        self.window3d.setTrackBallManipulator()
        self.look_at_scene()
        self.context().aboutToBeDestroyed.connect(self.free)

    def look_at_scene(self) -> None:
        self.window3d.fitSceneIntoView()

    def show_body(self, body: zor.RigidBody, colour: zor.Vec4f) -> None:
        zorOSG.setDiffuseColor(zorOSG.createVisual(body, self.window3d.getRoot()), colour)

    def resizeGL(self, width: int, height: int) -> None:
        if self.can_draw:
            self.window3d.resize(0, 0, *self.size_in_pixels())

    def paintGL(self) -> None:
        if self.can_draw:
            self.window3d.frame()

    def free(self) -> None:
        self.can_draw = False
        self.makeCurrent()
        self.window3d.clear()
        self.doneCurrent()

    def size_in_pixels(self) -> tuple[int, int]:
        """A point of the widget has more than one pixel on some screens."""
        ratio = self.devicePixelRatio()
        return round(self.width() * ratio), round(self.height() * ratio)

    def pixel(self, event: QMouseEvent) -> tuple[int, int]:
        ratio = self.devicePixelRatio()
        return round(event.position().x() * ratio), round(event.position().y() * ratio)

    def mousePressEvent(self, event: QMouseEvent) -> None:
        if event.button() in BUTTONS:
            self.window3d.mousePressEvent(*self.pixel(event), BUTTONS[event.button()])

    def mouseReleaseEvent(self, event: QMouseEvent) -> None:
        if event.button() in BUTTONS:
            self.window3d.mouseReleaseEvent(*self.pixel(event), BUTTONS[event.button()])

    def mouseMoveEvent(self, event: QMouseEvent) -> None:
        self.window3d.mouseMoveEvent(*self.pixel(event))

    def wheelEvent(self, event: QWheelEvent) -> None:
        if event.angleDelta().y():
            self.window3d.wheelEvent(0 if event.angleDelta().y() > 0 else 1)

    def keyPressEvent(self, event: QKeyEvent) -> None:
        if event.text():
            self.window3d.keyPressEvent(ord(event.text()), modifiers(event))

    def keyReleaseEvent(self, event: QKeyEvent) -> None:
        if event.text():
            self.window3d.keyReleaseEvent(ord(event.text()), modifiers(event))


def modifiers(event: QKeyEvent) -> int:
    return sum(mask for key, mask in MODIFIERS.items() if event.modifiers() & key)


def add_body(simulation: zorSDK.Simulation, shape: zorCollide.Shape, position: zor.Vec3, static: bool = False) -> zor.RigidBody:
    body = zor.RigidBody(zorCollide.Geometry(shape))
    body.setPosition(position)
    if static:
        body.setMotionControl(zor.RigidBody.STATIC)
    simulation.add(body)
    return body


def make_simulation() -> zorSDK.Simulation:
    """A round basin of slabs."""
    simulation = zorSDK.Simulation()
    simulation.setTimeStep(STEP)
    add_body(simulation, zorCollide.Cylinder(2.2, 0.2), zor.Vec3(0, 0, -0.1), static=True).setRotation(
        zor.Quat(zor.Vec3(0, 1, 0), zor.Vec3(0, 0, 1)))
    for i in range(24):
        angle = math.tau * i / 24
        slab = add_body(simulation, zorCollide.Box(zor.Vec3(0.06, 0.29, 0.28)),
                        zor.Vec3(2.15 * math.cos(angle), 2.15 * math.sin(angle), 0.2), static=True)
        slab.setRotation(zor.Quat(angle, zor.Vec3(0, 0, 1)))
    return simulation


class Window(QMainWindow):
    """The view and its controls."""

    def __init__(self, stop_after: float, screen_shot: str):
        super().__init__()
        self.setWindowTitle("Simulation in a Qt window")
        self.resize(960, 600)
        self.stop_after, self.screen_shot = stop_after, screen_shot
        self.simulation = make_simulation()
        self.random = random.Random(7)
        self.view = View(self.simulation)
        self.is_running = True
        self.pause = self.button("Pause", self.toggle)
        self.gravity = QSlider(Qt.Orientation.Horizontal)
        self.gravity.setRange(0, 250)
        self.gravity.setValue(98)
        self.gravity.valueChanged.connect(self.set_gravity)
        self.gravity_text, self.state = QLabel(), QLabel()
        controls = QVBoxLayout()
        for widget in (self.button("Drop ten bodies", self.drop_ten), self.pause, self.button("Whole scene", self.view.look_at_scene),
                       self.gravity_text, self.gravity, self.state):
            controls.addWidget(widget)
        controls.addStretch()
        layout = QHBoxLayout()
        layout.addWidget(self.view, stretch=1)
        layout.addLayout(controls)
        everything = QWidget()
        everything.setLayout(layout)
        self.setCentralWidget(everything)
        self.set_gravity(self.gravity.value())
        self.timer = QTimer(self)
        self.timer.timeout.connect(self.advance)
        self.timer.start(16)

    def button(self, text: str, action: Callable[[], None]) -> QPushButton:
        button = QPushButton(text)
        button.clicked.connect(action)
        return button

    def toggle(self) -> None:
        self.is_running = not self.is_running
        self.pause.setText("Pause" if self.is_running else "Go on")

    def set_gravity(self, tenths: int) -> None:
        self.simulation.setUniformGravity(zor.Vec3(0, 0, -tenths / 10))
        self.gravity_text.setText(f"Gravity {tenths / 10:.1f} m/s²")

    def drop_ten(self) -> None:
        shapes: list[zorCollide.Shape] = [zorCollide.Sphere(0.2), zorCollide.Box(zor.Vec3(0.18, 0.18, 0.18)), zorCollide.Capsule(0.13, 0.3)]
        for i in range(10):
            place = zor.Vec3(self.random.uniform(-1, 1), self.random.uniform(-1, 1), 2 + 0.45 * i)
            body = add_body(self.simulation, self.random.choice(shapes), place)
            self.view.show_body(body, self.random.choice(COLOURS))

    def advance(self) -> None:
        if self.is_running:
            for _ in range(STEPS_A_FRAME):
                self.simulation.stepForward()
        time = self.simulation.getTimeStamp()
        self.state.setText(f"{time:.1f} s\n{len(self.simulation.getRigidBodies())} bodies")
        self.view.update()
        if self.stop_after and time >= self.stop_after:
            if self.screen_shot:
                self.grab().save(self.screen_shot)
            self.close()

    def closeEvent(self, event: QCloseEvent) -> None:
        self.timer.stop()
        self.view.free()
        super().closeEvent(event)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--stopAfter", type=float, default=0, help="simulated seconds after which the window closes; 0 for never")
    parser.add_argument("--screenShot", default="", help="picture of the window when it closes by itself")
    arguments = parser.parse_args()
    if not os.environ.get("DISPLAY") and not os.environ.get("WAYLAND_DISPLAY"):
        print("There is no display. Run it in a virtual one: xvfb-run -a ./zor run examples/qt_viewer.py", file=sys.stderr)
        return 1
    surface = QSurfaceFormat()  # before the application makes its first context
    surface.setProfile(QSurfaceFormat.OpenGLContextProfile.CompatibilityProfile)
    surface.setOption(QSurfaceFormat.FormatOption.DeprecatedFunctions)
    surface.setSamples(4)
    QSurfaceFormat.setDefaultFormat(surface)
    program = QApplication(sys.argv[:1])
    window = Window(arguments.stopAfter, arguments.screenShot)
    window.show()
    if arguments.stopAfter:
        QTimer.singleShot(200, window.drop_ten)
        QTimer.singleShot(900, window.drop_ten)
    return program.exec()


if __name__ == "__main__":
    sys.exit(main())
