"""How nodes are drawn: materials, texture roles, cube maps and skies, lights, outlines, uniforms; in pixels."""

import math

import numpy
import pytest

import _zorOSG
import osg
import osgDB
import zor
import zorCollide
import zorOSG
import zorRender

GRAY = zor.Vec4f(0.6, 0.6, 0.6, 1)
# The sides of a cube map, their colours, and where they are seen in a scene.
SIDES = {"posx": ((1, 0, 0), (1, 0, 0)), "negx": ((0, 1, 1), (-1, 0, 0)), "posy": ((0, 1, 0), (0, 0, 1)),
         "negy": ((1, 0, 1), (0, 0, -1)), "posz": ((0, 0, 1), (0, 1, 0)), "negz": ((1, 1, 0), (0, -1, 0))}


@pytest.fixture
def application(new_application):
    app = new_application("--window", "160x120")
    app.setCameraHome(zor.Vec3(0, -6, 0), zor.Vec3())
    app.getSceneDecorator().setBackgroundColor(zor.Vec3())
    return app


@pytest.fixture
def root(application):
    return application.getSceneRoot()


@pytest.fixture
def add(application, root):
    """Adds a body that stays, in grey."""

    def add_body(shape, position=(0, 0, 0)):
        body = zor.RigidBody(zorCollide.Geometry(shape))
        body.setPosition(zor.Vec3(*position))
        body.setMotionControl(zor.RigidBody.STATIC)
        application.getSimulation().add(body)
        visual = zorOSG.createVisual(body, root)
        zorOSG.setDiffuseColor(visual, GRAY)
        return visual

    return add_body


@pytest.fixture
def plate(add):
    """Turned to the camera, it fills the middle of the picture."""
    visual = add(zorCollide.Box(1.2, 0.1, 1.2))
    zorOSG.setSpecularColor(visual, zor.Vec4f(0, 0, 0, 1))
    return visual


def picture(pixels):
    """An image of numbers from 0 to 1, upper row first, gray or coloured."""
    pixels = numpy.asarray(pixels, float)
    if pixels.ndim == 2:
        pixels = numpy.repeat(pixels[..., None], 3, axis=2)
    image = osg.Image()
    image.allocate(pixels.shape[1], pixels.shape[0], 3)
    numpy.asarray(image)[:] = (pixels[::-1] * 255 + 0.5).astype("u1")
    return image


def texture(pixels):
    return osg.Texture2D(picture(pixels))


def halves(left, right, size=16):
    pixels = numpy.empty((size, size, numpy.size(left)))
    pixels[:, : size // 2], pixels[:, size // 2 :] = left, right
    return pixels[..., 0] if numpy.size(left) == 1 else pixels


def brightness(image, columns=slice(70, 90), rows=slice(50, 70)):
    return image[rows, columns].mean()


LEFT, RIGHT = slice(58, 76), slice(84, 102)


class TestMaterials:
    def test_metal_has_no_colour_but_what_it_reflects(self, add, shot):
        ball = add(zorCollide.Sphere(1))
        levels = []
        for metallic in (0, 0.5, 1):
            zorOSG.setMetallic(ball, metallic)
            levels.append(brightness(shot()))
        assert levels[0] > levels[1] + 10 > levels[2] + 20

    def test_a_rough_highlight_is_wider(self, application, add, shot):
        ball = add(zorCollide.Sphere(1))
        zorOSG.setDiffuseColor(ball, zor.Vec4f(0.1, 0.1, 0.1, 1))
        zorOSG.setSpecularColor(ball, zor.Vec4f(1, 1, 1, 1))

        def spot(roughness):
            zorOSG.setRoughness(ball, roughness)
            image = shot().mean(axis=2)
            return (image[30:90, 50:110] > 110).sum()

        assert 0 < 2 * spot(0.1) < spot(0.35)
        application.getSceneDecorator().setEnableShaderState(False)
        assert spot(0.7) > 1.5 * spot(0.3)  # the Phong exponent goes along

    @pytest.mark.parametrize("setter", [zorOSG.setMetallic, zorOSG.setDiffuseColor], ids=lambda f: f.__name__)
    def test_override_wins_over_values_further_down(self, setter, root, plate, shot):
        dark, bright = {zorOSG.setMetallic: (1, 0), zorOSG.setDiffuseColor: (zor.Vec4f(0.1, 0.1, 0.1, 1), GRAY)}[setter]
        setter(plate, bright)
        before = brightness(shot())
        setter(root, dark)
        assert brightness(shot()) == pytest.approx(before, abs=1)
        setter(root, dark, True)
        zorOSG.setShininess(root, 20)  # another value, which need not win
        overridden = brightness(shot())
        setter(root, dark, False)
        assert overridden < before - 30 and brightness(shot()) == pytest.approx(before, abs=1)

    def test_a_new_material_looks_as_the_node_did(self, plate, shot):
        zorOSG.setDiffuseColor(plate, zor.Vec4f(0.9, 0.1, 0.1, 1))
        zorOSG.setShininess(plate.getChild(0), 5)
        image = shot()[50:70, 70:90].mean(axis=(0, 1))
        assert image[0] > 3 * image[1]

    def test_gamma_adds_light_as_nature_does(self, application, root, add, shot):
        add(zorCollide.Sphere(1))
        plain = shot()
        zorOSG.setGamma(root, 2.2)
        bent = shot()
        lit = plain[30:90, 50:110].mean(axis=2)
        middle = (lit > 60) & (lit < 140)
        assert abs(bent[30:90, 50:110].mean(axis=2) - lit)[middle].mean() > 4
        application.getSceneDecorator().setEnableLights(0)
        dark = shot()
        zorOSG.setGamma(root, 1)
        assert abs(shot() - dark).max() <= 3  # light that is alike everywhere stays as it was

    def test_values_out_of_range(self, plate):
        for setter in (zorOSG.setMetallic, zorOSG.setRoughness, zorOSG.setEnvMapReflectionCoefficient, zorOSG.setGamma):
            for node, value in ((None, 0.5), (plate, math.nan)):
                with pytest.raises(RuntimeError, match=setter.__name__):
                    setter(node, value)
        for gamma in (0, -1, 11):
            with pytest.raises(RuntimeError, match="0.1 to 10"):
                zorOSG.setGamma(plate, gamma)
        zorOSG.setMetallic(plate, 7)
        assert plate.getStateSet().getUniform("zor_metallic").get() == 1


class TestTextureRoles:
    """Each of these fails where the role draws nothing."""

    def test_normal_map(self, plate, shot):
        assert abs(brightness(shot(), LEFT) - brightness(shot(), RIGHT)) < 3
        # The key light comes from the left: what leans there is brighter.
        assert zorOSG.setTexture(plate, texture(halves((0.15, 0.5, 0.85), (0.85, 0.5, 0.85))), False, zorOSG.NORMALMAP_TEXTURE)
        image = shot()
        assert brightness(image, LEFT) > brightness(image, RIGHT) + 20

    def test_height_map_shades_and_shifts(self, application, plate, shot):
        plain = shot()
        x = numpy.arange(64) / 64
        ridges = numpy.tile(0.5 + 0.5 * numpy.sin(2 * math.pi * 4 * x), (64, 1))
        assert zorOSG.setTexture(plate, texture(ridges), True, zorOSG.HEIGHTMAP_TEXTURE)
        assert shot()[50:70, 58:102].std() > plain[50:70, 58:102].std() + 3
        # Seen from the side, what lies deep is shifted against what does not.
        application.setCameraHome(zor.Vec3(-5, -4, 0), zor.Vec3())
        zorOSG.setTexture(plate, texture(halves((1, 0, 0), (0, 0, 1), 64)))
        zorOSG.setTexture(plate, texture(numpy.ones((4, 4))), True, zorOSG.HEIGHTMAP_TEXTURE)
        high = shot()
        zorOSG.setTexture(plate, texture(numpy.zeros((4, 4))), True, zorOSG.HEIGHTMAP_TEXTURE)
        zorOSG.setUniformFloat(plate, "zor_heightScale", 0.2)
        deep = shot()

        def red(image):
            return ((image[50:70, :, 0] > 2 * image[50:70, :, 2]) & (image[50:70, :, 0] > 40)).sum()

        assert abs(red(high) - red(deep)) > 20

    def test_metallic_and_roughness_maps(self, plate, shot):
        assert zorOSG.setTexture(plate, texture(halves(0, 1)), False, zorOSG.METALLIC_TEXTURE)
        image = shot()
        assert brightness(image, LEFT) > brightness(image, RIGHT) + 25
        zorOSG.setTexture(plate, texture(halves(1, 1)), False, zorOSG.METALLIC_TEXTURE)
        assert zorOSG.setTexture(plate, texture(halves(0.1, 0.6)), False, zorOSG.ROUGHNESS_TEXTURE)
        image = shot()
        assert brightness(image, RIGHT) > brightness(image, LEFT) + 8  # sees light from farther aside
        zorOSG.setRoughness(plate, 0.1)
        assert brightness(shot(), RIGHT) < brightness(image, RIGHT) - 8  # the value is a factor

    def test_stored_shadows(self, plate, shot):
        assert zorOSG.setTexture(plate, texture(halves(0, 1)), False, zorOSG.SHADOW_TEXTURE)
        image = shot()
        assert 10 < brightness(image, LEFT) < brightness(image, RIGHT) - 30

    @pytest.mark.parametrize("method", ["SOFT_SHADOWMAP", "SHADOWMAP", "PARALLELLSPLIT_SHADOWMAP"])
    def test_noise_moves_the_edges_of_shadows(self, method, application, add, root, shot):
        application.setCameraHome(zor.Vec3(0, -9, 6), zor.Vec3())
        application.getSceneDecorator().setShadowMethod(getattr(zorOSG.SceneDecorator, method))
        add(zorCollide.Box(4, 4, 0.1), (0, 0, -1.1))
        add(zorCollide.Box(0.8, 0.8, 0.8))
        plain = shot()
        assert zorOSG.setTexture(root, texture(numpy.random.default_rng(1).random((16, 16, 3))), True, zorOSG.SHADOW_JITTER_TEXTURE)
        changed = abs(shot() - plain).max(axis=2) > 8
        assert 3 < changed.sum() < 0.1 * changed.size

    def test_mirror_ball(self, plate, shot):
        ball = numpy.zeros((64, 64, 3))
        ball[24:40, 24:40] = (0, 1, 0)
        assert zorOSG.setTexture(plate, texture(ball), False, zorOSG.CUBEMAP_TEXTURE)
        zorOSG.setEnvMapReflectionCoefficient(plate, 1)
        image = shot()
        assert (image[58:62, 78:82] == (0, 255, 0)).all() and (image[58:62, 78:82].shape == (4, 4, 3))

    @pytest.mark.parametrize("role, second", [(zorOSG.DIFFUSE_TEXTURE, 0.1), (zorOSG.METALLIC_TEXTURE, 1), (zorOSG.SHADOW_TEXTURE, 0)])
    def test_the_scale_repeats_an_image(self, role, second, plate, shot):
        def edges():
            row = shot()[60, 54:106].mean(axis=1)
            dark = row < (row.min() + row.max()) / 2
            return (dark[1:] != dark[:-1]).sum()

        image = texture(halves(1 - second if role == zorOSG.METALLIC_TEXTURE else 1, second, 64))
        assert zorOSG.setTexture(plate, image, True, role, 4, 1)
        scaled = edges()
        assert zorOSG.setTexture(plate, image, True, role)
        assert edges() <= 3 and scaled >= 6

    def test_all_roles_at_once_and_in_the_fixed_pipeline(self, application, plate, shot):
        for role in range(8):
            assert zorOSG.setTexture(plate, texture(halves(0.6, 0.6)), True, role)
        zorOSG.setGamma(plate, 2)
        assert brightness(shot()) > 20
        application.getSceneDecorator().setEnableShaderState(False)
        assert brightness(shot()) > 20
        with pytest.raises(RuntimeError, match="no such texture mode"):
            zorOSG.setTexture(plate, texture(halves(1, 1)), True, 8)


def write_sides(folder, prefix="", ending=".png", size=8):
    for name, (color, _) in SIDES.items():
        osgDB.writeImageFile(picture(numpy.full((size, size, 3), color, float)), str(folder / f"{prefix}{name}{ending}"))


def seen(image):
    return tuple((image[55:65, 75:85].mean(axis=(0, 1)) > 127).astype(int))


class TestCubeMaps:
    @pytest.mark.parametrize("ending", [".png", ".dds"])
    def test_a_mirror_shows_the_side_behind_the_camera(self, ending, application, add, tmp_path, shot):
        write_sides(tmp_path, ending=ending)
        box = add(zorCollide.Box(1, 1, 1))
        assert zorOSG.setCubeMapTexture(box, str(tmp_path), ending.strip(".")) is True
        zorOSG.setEnvMapReflectionCoefficient(box, 1)
        for color, direction in SIDES.values():
            application.setCameraHome(zor.Vec3(*direction) * 6, zor.Vec3(), zor.Vec3(0, 1, 0) if direction[2] else zor.Vec3(0, 0, 1))
            assert seen(shot()) == color
        zorOSG.setEnvMapReflectionCoefficient(box, 0)
        assert len(set(shot()[60, 80])) < 4 and seen(shot()) != SIDES["posz"][0]

    def test_metal_reflects_by_its_roughness(self, plate, tmp_path, shot):
        stripes = numpy.zeros((32, 32, 3))
        stripes[:, ::8] = stripes[:, 1::8] = stripes[:, 2::8] = stripes[:, 3::8] = 1
        images = osg.ImageVector([picture(stripes)] * 6)
        state = plate.getStateSet()
        for name, image in zip(SIDES, images):
            osgDB.writeImageFile(image, str(tmp_path / f"{name}.png"))
        assert zorOSG.setCubeMapTexture(plate, str(tmp_path), ".png")
        zorOSG.setMetallic(plate, 1)
        contrast = []
        for roughness in (0, 0.5, 1):
            zorOSG.setRoughness(plate, roughness)
            contrast.append(shot()[50:70, 50:110].std())
        assert contrast[0] > 1.5 * contrast[1] and contrast[2] < 0.5 * contrast[0] and state is not None

    def test_images_of_a_common_beginning(self, tmp_path):
        write_sides(tmp_path, "room_", ".png")
        images = osg.ImageVector()
        assert zorOSG.loadCubeMapImages(str(tmp_path / "room"), "png", images) is True
        assert len(images) == 6 and images[0].s() == 8
        for made in (zorOSG.createTextureCubeMap(images), zorOSG.createTextureCubeMap(str(tmp_path / "room"), ".png")):
            assert isinstance(made, osg.TextureCubeMap) and made.thisown is False
            assert all(made.getImage(i) is not None for i in range(6))

    def test_what_does_not_fit_is_named(self, plate, tmp_path, capfd):
        def told():
            return capfd.readouterr().err

        write_sides(tmp_path)
        (tmp_path / "negy.png").unlink()
        assert zorOSG.setCubeMapTexture(plate, str(tmp_path), ".png") is False and "negy.png" in told()
        assert zorOSG.setCubeMapTexture(plate, str(tmp_path)) is False and "posx.dds" in told()
        osgDB.writeImageFile(picture(numpy.ones((8, 4))), str(tmp_path / "negy.png"))
        assert zorOSG.setCubeMapTexture(plate, str(tmp_path), ".png") is False and "not square" in told()
        osgDB.writeImageFile(picture(numpy.ones((4, 4))), str(tmp_path / "negy.png"))
        assert zorOSG.setCubeMapTexture(plate, str(tmp_path), ".png") is False and "4 x 4" in told()
        (tmp_path / "negy.png").write_text("no image")
        assert zorOSG.setCubeMapTexture(plate, str(tmp_path), ".png") is False and "negy.png" in told()
        images = osg.ImageVector([osg.Image()] * 6)
        assert zorOSG.createTextureCubeMap(images) is None and "no pixels" in told()
        assert zorOSG.createTextureCubeMap(osg.ImageVector([picture(numpy.ones((4, 4)))] * 5)) is None and "not 5" in told()
        assert zorOSG.loadCubeMapImages("nowhere", ".png", images) is False and len(images) == 0
        with pytest.raises(RuntimeError, match="setCubeMapTexture"):
            zorOSG.setCubeMapTexture(None, str(tmp_path))


def sky_sphere(offset=0.0, below=(0, 0, 0), radius=100.0):
    """A sky whose sides are dark in their lower half."""
    side = numpy.ones((16, 16, 3))
    side[8:] = below
    top, bottom = numpy.ones((16, 16, 3)), numpy.full((16, 16, 3), below, float)
    images = osg.ImageVector([picture(p) for p in (side, side, top, bottom, side, side)])
    return zorOSG.createSkySphere("sky", images, radius, offset)


class TestSky:
    @pytest.mark.parametrize("kind", ["sphere", "box"])
    def test_six_directions_from_anywhere(self, kind, application, root, tmp_path, shot):
        write_sides(tmp_path, "sky_")
        if kind == "sphere":
            images = osg.ImageVector()
            assert zorOSG.loadCubeMapImages(str(tmp_path / "sky"), ".png", images)
            sky = zorOSG.createSkySphere("sky", images, 50.0)
            assert isinstance(sky, osg.Geode) and sky.thisown is False and sky.getName() == "sky"
        else:
            sky = zorOSG.SkyBox("sky", str(tmp_path / "sky"), "png")
            assert sky.thisown and sky.getName() == "sky"
        root.addChild(sky)
        for color, (x, y, z) in SIDES.values():
            for place in (zor.Vec3(), zor.Vec3(300, -200, 70)):
                up = zor.Vec3(0, 1, 0) if z else zor.Vec3(0, 0, 1)
                application.setCameraHome(place, place + zor.Vec3(x, y, z), up)
                assert seen(shot()) == color

    def test_it_changes_nothing_but_the_background(self, application, root, add, shot):
        application.setCameraHome(zor.Vec3(0, -9, 6), zor.Vec3())
        add(zorCollide.Box(3, 3, 0.1), (0, 0, -1.1))
        add(zorCollide.Sphere(0.8))
        bound, plain = root.getBound(), shot()
        radius, projection = bound.radius(), application.getCamera().getProjectionMatrix()
        root.addChild(sky_sphere(below=(1, 1, 1)))
        image = shot()
        assert root.getBound().radius() == radius and application.getCamera().getProjectionMatrix() == projection
        background = plain.max(axis=2) == 0
        assert background.sum() > 1000 and (image[background] == 255).mean() > 0.95
        inner = ~grown(background, 4)
        assert inner.sum() > 1000 and abs(image - plain)[inner].max() <= 2
        assert zorOSG.smoothNormals(root.getChild(root.getNumChildren() - 1)) == 0

    def test_an_offset_moves_the_horizon(self, application, root, shot):
        def horizon(offset):
            sky = sky_sphere(offset)
            root.addChild(sky)
            application.setCameraHome(zor.Vec3(), zor.Vec3(0, 1, 0))
            rows = (shot()[:, 80].mean(axis=1) > 127).sum()
            root.removeChild(sky)
            return rows

        lower, level, higher = horizon(-15.0), horizon(0.0), horizon(15.0)
        assert level == pytest.approx(60, abs=4) and lower > level + 10 and higher < level - 10

    def test_bad_skies(self, capfd):
        assert zorOSG.createSkySphere("sky", osg.ImageVector(), 10.0) is None and "not 0" in capfd.readouterr().err
        for radius, offset in ((0.0, 0.0), (-1.0, 0.0), (math.nan, 0.0), (1.0, math.inf)):
            with pytest.raises(RuntimeError, match="createSkySphere"):
                zorOSG.createSkySphere("sky", osg.ImageVector(), radius, offset)
        with pytest.raises(RuntimeError, match="SkyBox"):
            zorOSG.SkyBox("sky", "nowhere", ".png", -1.0)
        assert zorOSG.SkyBox("sky", "nowhere", ".png").getNumChildren() == 0
        assert "nowhere_posx.png" in capfd.readouterr().err


class TestLights:
    def test_off_and_on_again_further_down(self, root, add, shot):
        left, right = add(zorCollide.Sphere(0.7), (-1, 0, 0)), add(zorCollide.Sphere(0.7), (1, 0, 0))

        def levels():
            image = shot()
            return brightness(image, slice(45, 60)), brightness(image, slice(100, 115))

        both = levels()
        zorOSG.setEnableLight(False, 0, root)
        dark = levels()
        assert max(dark) < min(both) - 25
        zorOSG.setEnableLight(True, 0, right)
        mixed = levels()
        assert mixed[0] == pytest.approx(dark[0], abs=2) and mixed[1] == pytest.approx(both[1], abs=2)
        zorOSG.setEnableLight(True, 0, root)
        assert levels() == pytest.approx(both, abs=2) and left is not None

    @pytest.mark.parametrize("shaders", [True, False])
    def test_lights_of_a_script(self, shaders, application, root, add, shot):
        add(zorCollide.Sphere(1))
        application.getSceneDecorator().setEnableShaderState(shaders)
        application.getSceneDecorator().setEnableLights(0)
        source = osg.LightSource()
        light = osg.Light(5) if hasattr(osg, "Light") else source.getLight()
        light.setLightNum(5)
        source.setLight(light)
        handle = zorOSG.LightSource(source)
        handle.setPosition(zor.Vec4(0, -4, 0, 1))
        handle.setDiffuse(zor.Vec4f(0, 1, 0, 1))
        handle.setAmbient(zor.Vec4f(0, 0, 0, 1))
        handle.setSpecular(zor.Vec4f(0, 0, 0, 1))
        root.addChild(source)
        assert handle.getLightNum() == 5
        before = shot()[60, 80]
        zorOSG.setEnableLight(True, 5, root)
        after = shot()[60, 80]
        assert after[1] > before[1] + 60 and abs(after[0] - before[0]) < 4
        source.setLight(None)
        with pytest.raises(RuntimeError, match="taken away"):
            handle.getAmbient()
        shot()

    def test_lights_that_there_are_not(self, root):
        for number in (-1, 8):
            with pytest.raises(RuntimeError, match="there is no light"):
                zorOSG.setEnableLight(True, number, root)
        with pytest.raises(RuntimeError, match="node is null"):
            zorOSG.setEnableLight(True, 0, None)


def grown(pixels, by):
    """Marked pixels and those around them."""
    result = pixels.copy()
    for _ in range(by):
        result[1:-1, 1:-1] |= result[2:, 1:-1] | result[:-2, 1:-1] | result[1:-1, 2:] | result[1:-1, :-2]
    return result


def yellow(image):
    return (image[..., 0] > 150) & (image[..., 1] > 150) & (image[..., 2] < 90)


class TestOutline:
    @pytest.mark.parametrize("shape", [zorCollide.Sphere(1), zorCollide.Box(0.8, 0.8, 0.8), zorCollide.Cylinder(0.6, 1.4)], ids=["ball", "box", "cylinder"])
    def test_a_line_around_and_nothing_inside(self, shape, application, add, shot):
        application.setCameraHome(zor.Vec3(2, -5, 3), zor.Vec3())
        body = add(shape)
        shot()
        plain = shot()
        inside = plain.max(axis=2) > 20
        counts = []
        for width in (1, 4):
            assert zorOSG.setEnableOutline(body, True, zorRender.Color(1, 1, 0, 1), width) is True
            image = shot()
            counts.append(yellow(image).sum())
        deep = ~grown(~inside, 4)  # edges are smoothed over some pixels
        around = 3 * math.sqrt(inside.sum())
        assert counts[0] > 0.3 * around and counts[1] > 2.5 * counts[0]
        assert deep.sum() > 300 and (image[deep] == plain[deep]).all()
        assert zorOSG.setEnableOutline(body, False) is False
        assert (shot() == plain).all()

    def test_state_and_defaults(self, add, shot):
        body = add(zorCollide.Sphere(1))
        assert zorOSG.getEnableOutline(body) is False
        assert zorOSG.setEnableOutline(body, True) is True and zorOSG.getEnableOutline(body) is True
        image = shot()
        assert 30 < yellow(image).sum() < 1000
        zorOSG.setEnableOutline(body, True, zorRender.Color(0, 0, 1, 1))
        assert yellow(shot()).sum() == 0
        zorOSG.setEnableOutline(body, False)
        zorOSG.setEnableOutline(body, False)
        assert zorOSG.getEnableOutline(body) is False
        for width in (-1.0, math.nan, 1000.0):
            with pytest.raises(RuntimeError, match="width"):
                zorOSG.setEnableOutline(body, True, zorRender.Color(), width)
        assert zorOSG.setEnableOutline(None, True) is False and zorOSG.getEnableOutline(None) is False

    def test_others_hide_it_and_it_follows(self, application, add, root, shot):
        body = add(zorCollide.Sphere(0.6), (-1, 1, 0))
        add(zorCollide.Box(0.5, 0.1, 1.4), (-1.5, 0, 0))
        bound = root.getBound().radius()
        zorOSG.setEnableOutline(body, True, zorRender.Color(1, 1, 0), 3)
        assert root.getBound().radius() == bound
        columns = numpy.nonzero(yellow(shot()))[1]
        assert len(columns) and columns.min() > 50  # the box hides its left side
        application.getSimulation().getRigidBodies()[0].setPosition(zor.Vec3(1, 1, 0))
        columns = numpy.nonzero(yellow(shot()))[1]
        assert columns.min() > 75 and columns.max() < 130

    def test_neighbours_show_their_lines_before_each_other(self, add, shot):
        for x in range(-3, 4):
            zorOSG.setEnableOutline(add(zorCollide.Sphere(0.4), (0.5 * x, 0.4 * x, 0)), True, zorRender.Color(1, 1, 0), 2)
        image = shot()
        row = yellow(image)[60, 20:140]
        assert ((row[1:] & ~row[:-1]).sum()) >= 7

    @pytest.mark.parametrize("method", range(7))
    def test_with_every_kind_of_shadow(self, method, application, add, shot):
        application.getSceneDecorator().setShadowMethod(method)
        application.setCameraHome(zor.Vec3(0, -9, 6), zor.Vec3())
        add(zorCollide.Box(4, 4, 0.1), (0, 0, -1.1))
        body = add(zorCollide.Sphere(0.8))
        plain = shot()
        zorOSG.setEnableOutline(body, True)
        image = shot()
        ring = yellow(image)
        assert 40 < ring.sum() < 600
        assert abs(image - plain)[~grown(ring, 4)].max() < 12


class TestUniforms:
    def test_numbers_reach_the_state(self):
        node = osg.Group()
        zorOSG.setUniformFloat(node, "speed", 2.5)
        zorOSG.setUniformInt(node, "count", -3)
        state = node.getStateSet()
        assert state.getUniform("speed").get() == 2.5 and state.getUniform("count").get() == -3
        first = state.getUniform("speed")
        zorOSG.setUniformFloat(node, "speed", 3.5)
        assert state.getUniform("speed").get() == 3.5 and first.get() == 2.5  # a new one in its place
        for function, value in ((zorOSG.setUniformFloat, 1.0), (zorOSG.setUniformInt, 1)):
            with pytest.raises(RuntimeError, match=f"{function.__name__}.*null"):
                function(None, "speed", value)
            with pytest.raises(RuntimeError, match=f"{function.__name__}.*empty"):
                function(node, "", value)
        with pytest.raises(TypeError, match="in method 'setUniformInt', argument 3 of type 'int'"):
            zorOSG.setUniformInt(node, "count", 1.5)


def test_a_clip_plane_cuts_nothing_but_what_is_below_it(application, root, plate, shot):
    # The last that is drawn; what goes over the whole picture later, such as smoothing, stays whole.
    whole = shot()
    clip = zorOSG.ClipPlane(zor.Vec3(0.3, 0, 0), zor.Vec3(-1, 0, 0))
    root.addChild(clip)
    clip.addChild(plate)
    root.removeChild(plate)
    cut = shot()
    assert whole[60, 70:90].min() > 40
    assert abs(cut[60, :85] - whole[60, :85]).max() < 12 and cut[60, 92:].max() < 12


def test_state_that_visuals_share_can_be_edited_for_one_of_them():
    root, nodes = osg.Group(), []
    for geometry in [zorCollide.Geometry(zorCollide.Box(1, 1, 1)) for _ in range(3)]:
        nodes.append(zorOSG.createVisual(geometry, root))
        zorOSG.setDiffuseColor(nodes[-1], zor.Vec4f(0.8, 0.2, 0.1, 1))
    first, second, third = nodes
    state = first.getStateSet()
    assert state == first.getOrCreateStateSet() and state.getNumParents() == 1
    state.setMode(osg.GL_LIGHTING, osg.StateAttribute.OFF)
    state.getMaterial().setShininess(osg.Material.FRONT_AND_BACK, 3)
    zorOSG.setUniformFloat(second, "speed", 2.5)
    zorOSG.setDiffuseColor(first, zor.Vec4f(0, 0, 1, 1))  # what was edited stays
    assert first.getStateSet() == state and state.getMode(osg.GL_LIGHTING) == osg.StateAttribute.OFF
    assert second.getStateSet().getUniform("speed").get() == 2.5
    for node in (second, third):
        material = node.getStateSet().getMaterial()
        assert material.getDiffuse(osg.Material.FRONT).x() == pytest.approx(0.8)
        assert material.getShininess(osg.Material.FRONT) != 3
    assert third.getStateSet().getUniform("speed") is None


def test_a_mismatch_lists_all_forms_of_set_texture():
    with pytest.raises(TypeError) as error:
        _zorOSG.setTexture(1, 2)
    assert str(error.value).count("zorOSG::setTexture(") == 31


def test_pixels_of_texture_data_are_copies():
    pixels = zorCollide.TextureData(2, 1, zorCollide.TextureData.RGB, range(6)).getPixels()
    assert list(pixels) == [0, 1, 2, 3, 4, 5]
    data = zorCollide.TextureData(2, 1, zorCollide.TextureData.RGB, pixels)
    changed = data.getPixels()
    changed.extend([7] * 1000)
    assert list(data.getPixels()) == list(pixels) and zorOSG.createTexture(zorCollide.TextureDataRef(data), True).getImage().s() == 2
