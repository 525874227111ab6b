"""Image and model files through the scene graph's modules."""

import numpy
import pytest

import osg
import osgDB


def test_an_image_survives_a_file(tmp_path):
    image = osg.Image()
    image.allocate(5, 4, 4)
    numpy.asarray(image)[:] = (10, 20, 30, 255)
    path = str(tmp_path / "picture.png")
    assert osgDB.writeImageFile(image, path)
    again = osgDB.readImageFile(path)
    assert again.referenceCount() == 1 and again.thisown
    assert (numpy.asarray(again)[1, 2] == (10, 20, 30, 255)).all()


def test_a_model_survives_a_file(tmp_path):
    group = osg.Group()
    group.setName("top")
    group.addChild(osg.MatrixTransform(osg.Matrixd.translate(1, 2, 3)))
    path = str(tmp_path / "model.osgt")
    osgDB.writeNodeFile(group, path)
    again = osgDB.readNodeFile(path)
    assert type(again) is osg.Group and again.getName() == "top"
    assert again.getChild(0).getMatrix().getTrans() == osg.Vec3d(1, 2, 3)


def test_files_that_cannot_be_used_are_named(tmp_path):
    missing = str(tmp_path / "missing.png")
    with pytest.raises(RuntimeError, match="missing.png"):
        osgDB.readImageFile(missing)
    with pytest.raises(RuntimeError, match="missing.png"):
        osgDB.readNodeFile(missing)
    image = osg.Image()
    image.allocate(2, 2)
    with pytest.raises(RuntimeError, match="nowhere"):
        osgDB.writeImageFile(image, str(tmp_path / "nowhere" / "picture.png"))
    with pytest.raises(RuntimeError):
        osgDB.writeImageFile(osg.Image(), str(tmp_path / "empty.png"))
