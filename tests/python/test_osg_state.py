"""State sets, their attributes, textures and uniforms."""

import pytest

import osg

ON = osg.StateAttribute.ON


def test_attributes_come_back_as_what_they_are():
    state = osg.StateSet()
    attributes = [osg.Material(), osg.BlendFunc(osg.BlendFunc.SRC_ALPHA, osg.BlendFunc.ONE), osg.Depth(osg.Depth.LEQUAL, 0, 1, False), osg.CullFace(),
                  osg.PolygonMode(osg.PolygonMode.FRONT_AND_BACK, osg.PolygonMode.LINE), osg.PolygonOffset(1, 2), osg.LineWidth(3), osg.Point(4),
                  osg.LightModel(), osg.Fog(), osg.AlphaFunc(osg.AlphaFunc.GREATER, 0.5), osg.Program(), osg.Light(), osg.ClipPlane(0, osg.Vec4d(0, 0, 1, 2))]
    for attribute in attributes:
        state.setAttributeAndModes(attribute)
    for attribute in attributes:
        again = state.getAttribute(attribute.getType())
        assert type(again) is type(attribute) and again == attribute
    assert state.getAttribute(osg.StateAttribute.DEPTH).getWriteMask() is False
    assert state.getMode(osg.GL_BLEND) == ON and state.getMaterial() == attributes[0]
    state.removeAttribute(osg.StateAttribute.MATERIAL)
    assert state.getMaterial() is None
    state.merge(osg.StateSet())
    state.clear()
    assert state.getAttribute(osg.StateAttribute.DEPTH) is None


def test_texture_units():
    state, texture = osg.StateSet(), osg.Texture2D()
    state.setTextureAttributeAndModes(3, texture)
    state.setTextureAttribute(3, osg.TexEnv(osg.TexEnv.DECAL))
    state.setTextureAttribute(3, osg.TexMat(osg.Matrixd.scale(2, 2, 2)))
    assert state.getTexture(3) == texture and type(state.getTexture(3)) is osg.Texture2D and state.getTexture(2) is None
    assert state.getTextureAttribute(3, osg.StateAttribute.TEXMAT).getMatrix().getScale() == osg.Vec3d(2, 2, 2)
    assert state.getTextureMode(3, osg.GL_TEXTURE_2D) == ON
    for wrong in (lambda: state.setAttribute(texture), lambda: state.setTextureAttribute(0, osg.Material()), lambda: state.setAttribute(None),
                  lambda: state.setTextureAttribute(0, None), lambda: state.setTextureAttributeAndModes(16, texture),
                  lambda: state.setTextureMode(1 << 31, osg.GL_TEXTURE_2D, ON), lambda: state.addUniform(None)):
        with pytest.raises(RuntimeError):
            wrong()


def test_textures():
    image = osg.Image()
    image.allocate(4, 2, 3)
    texture = osg.Texture2D(image)
    texture.setFilter(osg.Texture.MIN_FILTER, osg.Texture.NEAREST)
    texture.setWrap(osg.Texture.WRAP_S, osg.Texture.REPEAT)
    assert (texture.getFilter(osg.Texture.MIN_FILTER), texture.getWrap(osg.Texture.WRAP_S)) == (osg.Texture.NEAREST, osg.Texture.REPEAT)
    assert texture.getImage() == image
    cube = osg.TextureCubeMap()
    cube.setImage(osg.TextureCubeMap.POSITIVE_Z, image)
    assert cube.getImage(osg.TextureCubeMap.POSITIVE_Z) == image and cube.getImage(0) is None
    for face in (6, -1):
        with pytest.raises(IndexError):
            cube.setImage(face, image)
    with pytest.raises(RuntimeError):
        texture.setTextureSize(0, 1 << 20)


@pytest.mark.parametrize("value, other", [(True, False), (3, 4), (0.5, 2), (osg.Vec2(1, 2), osg.Vec2(3, 4)), (osg.Vec3(1, 2, 3), osg.Vec3()),
                                          (osg.Vec4(1, 2, 3, 4), osg.Vec4()), (osg.Matrixd.translate(1, 2, 3), osg.Matrixd()),
                                          (osg.Vec3d(1, 2, 3), osg.Vec3d(0.1, 0, 0))])
def test_uniforms_keep_the_type_of_their_first_value(value, other):
    uniform = osg.Uniform("u", value)
    assert uniform.get() == value and type(uniform.get()) is type(value)
    uniform.set(other)
    assert uniform.get() == other and type(uniform.get()) is type(value)
    wrong = osg.Vec2(1, 2) if not isinstance(value, osg.Vec2) else 1.5
    with pytest.raises(ValueError, match="'u' of type"):
        uniform.set(wrong)
    assert uniform.get() == other
    state = osg.StateSet()
    state.addUniform(uniform)
    assert state.getUniforms() == [uniform] == [state.getUniform("u")]


def test_arrays_of_uniforms_and_their_limits():
    points = osg.Uniform(osg.Uniform.FLOAT_VEC3, "points", 3)
    points.set(osg.Vec3(1, 2, 3), -1)
    assert [points.get(i) for i in range(3)] == [osg.Vec3(), osg.Vec3(), osg.Vec3(1, 2, 3)]
    for use in (lambda: points.get(3), lambda: points.set(osg.Vec3(), 1 << 40)):
        with pytest.raises(IndexError):
            use()
    for arguments in ((osg.Uniform.FLOAT, "n", 0), (osg.Uniform.FLOAT, "n", 1 << 30), (12345, "n")):
        with pytest.raises(RuntimeError):
            osg.Uniform(*arguments)
    count = osg.Uniform(osg.Uniform.UNSIGNED_INT, "count")
    count.set(3000000000)
    assert count.get() == 3000000000
    for wrong in (-1, 0.5, 1 << 40, float("nan")):
        with pytest.raises(ValueError):
            count.set(wrong)


def test_defines_bins_and_shaders(tmp_path):
    state = osg.StateSet()
    state.setDefine("LIGHTS", "4")
    assert state.getDefine("LIGHTS") == "4" and state.getDefine("FOG") is None
    state.setRenderBinDetails(11, "DepthSortedBin")
    assert (state.getBinNumber(), state.getBinName()) == (11, "DepthSortedBin")
    state.setRenderingHint(osg.StateSet.TRANSPARENT_BIN)
    assert state.getBinNumber() == 10
    program, shader = osg.Program(), osg.Shader(osg.Shader.VERTEX, "void main() {}")
    assert program.addShader(shader) and not program.addShader(shader) and program.getShader(0) == shader
    path = tmp_path / "missing.vert"
    with pytest.raises(RuntimeError, match="missing.vert"):
        shader.loadShaderSourceFromFile(str(path))
    path.write_text("// here\n")
    shader.loadShaderSourceFromFile(str(path))
    assert "here" in shader.getShaderSource()


def test_what_a_class_shows_of_itself_keeps_it_alive():
    plane = osg.ClipPlane(1, osg.Vec4d(1, 2, 3, 4)).getClipPlane()
    matrix = osg.TexMat(osg.Matrixd.translate(1, 2, 3)).getMatrix()
    [(osg.ClipPlane(), osg.TexMat()) for _ in range(100)]
    assert matrix.getTrans() == osg.Vec3d(1, 2, 3) and plane == osg.Vec4d(1, 2, 3, 4)
