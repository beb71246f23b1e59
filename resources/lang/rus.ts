<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="zh_CN">
<context>
    <name>BuiltInPicture</name>
    <message>
        <source>黎明</source>
        <translation>Рассвет</translation>
    </message>
    <message>
        <source>极光</source>
        <translation>Сияние</translation>
    </message>
    <message>
        <source>沙丘</source>
        <translation>Дюны</translation>
    </message>
    <message>
        <source>海岸</source>
        <translation>Берег</translation>
    </message>
    <message>
        <source>港湾</source>
        <translation>Гавань</translation>
    </message>
    <message>
        <source>剪纸</source>
        <translation>Бумага</translation>
    </message>
    <message>
        <source>星云</source>
        <translation>Туманность</translation>
    </message>
    <message>
        <source>晨雾</source>
        <translation>Туман</translation>
    </message>
    <message>
        <source>丝绸</source>
        <translation>Шёлк</translation>
    </message>
    <message>
        <source>等高线</source>
        <translation>Изолинии</translation>
    </message>
    <message>
        <source>轨道</source>
        <translation>Орбита</translation>
    </message>
</context>
<context>
    <name>ColorBar</name>
    <message>
        <source>白色</source>
        <translation>Белый</translation>
    </message>
    <message>
        <source>黑色</source>
        <translation>Чёрный</translation>
    </message>
    <message>
        <source>橙色</source>
        <translation>Оранжевый</translation>
    </message>
    <message>
        <source>黄色</source>
        <translation>Жёлтый</translation>
    </message>
    <message>
        <source>蓝色</source>
        <translation>Синий</translation>
    </message>
    <message>
        <source>绿色</source>
        <translation>Зелёный</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>显示设计</source>
        <translation>Оформление</translation>
    </message>
    <message>
        <source>背景选择</source>
        <translation>Фон</translation>
    </message>
    <message>
        <source>选择文件夹:</source>
        <translation>Выбрать папку:</translation>
    </message>
    <message>
        <source>默认主题</source>
        <translation>Темы</translation>
    </message>
    <message>
        <source>四个现成的主题</source>
        <translation>Четыре готовые темы</translation>
    </message>
    <message>
        <source>自定义主题</source>
        <translation>Свой экран</translation>
    </message>
    <message>
        <source>自己排列的画面</source>
        <translation>Экран по вашему вкусу</translation>
    </message>
    <message>
        <source>选择主题</source>
        <translation>Выберите тему</translation>
    </message>
    <message>
        <source>主题</source>
        <translation>Темы</translation>
    </message>
    <message>
        <source>CPU温度</source>
        <translation>Темп. ЦП</translation>
    </message>
    <message>
        <source>在屏幕上显示CPU温度</source>
        <translation>Показывать на экране температуру процессора</translation>
    </message>
    <message>
        <source>CPU使用率</source>
        <translation>Загр. ЦП</translation>
    </message>
    <message>
        <source>在屏幕上显示CPU使用率</source>
        <translation>Показывать на экране загрузку процессора</translation>
    </message>
    <message>
        <source>内存使用率</source>
        <translation>Память</translation>
    </message>
    <message>
        <source>在屏幕上显示内存使用率</source>
        <translation>Показывать на экране занятую память</translation>
    </message>
    <message>
        <source>时间</source>
        <translation>Время</translation>
    </message>
    <message>
        <source>在屏幕上显示时间</source>
        <translation>Показывать на экране время</translation>
    </message>
    <message>
        <source>功耗</source>
        <translation>Мощн.</translation>
    </message>
    <message>
        <source>在屏幕上显示功耗</source>
        <translation>Показывать на экране мощность процессора</translation>
    </message>
    <message>
        <source>日期</source>
        <translation>Дата</translation>
    </message>
    <message>
        <source>在屏幕上显示日期</source>
        <translation>Показывать на экране дату</translation>
    </message>
    <message>
        <source>风扇转速</source>
        <translation>Вентил.</translation>
    </message>
    <message>
        <source>在屏幕上显示风扇转速</source>
        <translation>Показывать на экране обороты вентилятора</translation>
    </message>
    <message>
        <source>其他</source>
        <translation>Другое</translation>
    </message>
    <message>
        <source>待定</source>
        <translation>Резерв</translation>
    </message>
    <message>
        <source>背景图片</source>
        <translation>Фоновые изображения</translation>
    </message>
    <message>
        <source>屏幕预览</source>
        <translation>Предпросмотр экрана</translation>
    </message>
    <message>
        <source>显示整张图片</source>
        <translation>Показать изображение целиком</translation>
    </message>
    <message>
        <source>横屏</source>
        <translation>Горизонтально</translation>
    </message>
    <message>
        <source>竖屏</source>
        <translation>Вертикально</translation>
    </message>
    <message>
        <source>编辑</source>
        <translation>Правка</translation>
    </message>
    <message>
        <source>移动项目，输入文字，修剪图片</source>
        <translation>Переместить элементы, ввести текст, кадрировать фон</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>放弃修改</source>
        <translation>Отменить изменения</translation>
    </message>
    <message>
        <source>确认</source>
        <translation>Применить</translation>
    </message>
    <message>
        <source>把画面发送到屏幕</source>
        <translation>Отправить на экран</translation>
    </message>
    <message>
        <source>最小化</source>
        <translation>Свернуть</translation>
    </message>
    <message>
        <source>退出</source>
        <translation>Выход</translation>
    </message>
    <message>
        <source>Kivo Screen</source>
        <translation>Kivo Screen</translation>
    </message>
    <message>
        <source>退出软件PC端屏幕内容显示信息将不准，
确定退出？</source>
        <translation>Данные на экране перестанут обновляться.</translation>
    </message>
    <message>
        <source>五项</source>
        <translation>5 полей</translation>
    </message>
    <message>
        <source>一项</source>
        <translation>1 поле</translation>
    </message>
    <message>
        <source>最多五项</source>
        <translation>До пяти элементов</translation>
    </message>
    <message>
        <source>只显示一项</source>
        <translation>Только один элемент</translation>
    </message>
    <message>
        <source>日期：大</source>
        <translation>Дата: крупно</translation>
    </message>
    <message>
        <source>日期：小</source>
        <translation>Дата: мелко</translation>
    </message>
    <message>
        <source>无法打开此图片。</source>
        <translation>Не удалось открыть изображение.</translation>
    </message>
    <message>
        <source>打开图片</source>
        <translation>Открыть изображение</translation>
    </message>
    <message>
        <source>是否删除此图片？</source>
        <translation>Оно исчезнет из списка; сам файл останется.</translation>
    </message>
    <message>
        <source>默认图片不能删除。</source>
        <translation>Встроенные изображения удалить нельзя.</translation>
    </message>
    <message>
        <source>默认</source>
        <translation>Карточки</translation>
    </message>
    <message>
        <source>场景</source>
        <translation>Пейзаж</translation>
    </message>
    <message>
        <source>功耗表</source>
        <translation>Мощность</translation>
    </message>
    <message>
        <source>时钟</source>
        <translation>Часы</translation>
    </message>
    <message>
        <source>副屏设置</source>
        <translation>Настройки экрана Kivo</translation>
    </message>
    <message>
        <source>显示窗口</source>
        <translation>Показать окно</translation>
    </message>
    <message>
        <source>退出程序</source>
        <translation>Выход</translation>
    </message>
    <message>
        <source>屏幕已就绪。点击此图标可打开设置窗口。</source>
        <translation>Экран готов. Нажмите этот значок, чтобы открыть окно настроек.</translation>
    </message>
    <message>
        <source>屏幕尚未响应。点击此图标可打开设置窗口。</source>
        <translation>Экран пока не отвечает. Нажмите этот значок, чтобы открыть окно настроек.</translation>
    </message>
    <message>
        <source>图片太多，无法再添加。</source>
        <translation>Изображений слишком много, добавить ещё одно нельзя.</translation>
    </message>
    <message>
        <source>登录时启动</source>
        <translation>Запускать при входе в систему</translation>
    </message>
    <message>
        <source>无法更改登录时启动的设置。</source>
        <translation>Не удалось изменить запуск при входе в систему.</translation>
    </message>
    <message>
        <source>CPU温度，点击读取系统温区</source>
        <translation>Температура ЦП; щелчок — термозона системы</translation>
    </message>
    <message>
        <source>软件屏幕</source>
        <translation>Программный экран</translation>
    </message>
    <message>
        <source>已连接</source>
        <translation>Подключён</translation>
    </message>
    <message>
        <source>没有屏幕，插入后发送</source>
        <translation>Нет экрана; отправка после подключения</translation>
    </message>
    <message>
        <source>没有屏幕</source>
        <translation>Нет экрана</translation>
    </message>
    <message>
        <source>没有权限打开屏幕</source>
        <translation>Нет доступа к экрану</translation>
    </message>
    <message>
        <source>屏幕不接收，可能被其他程序占用</source>
        <translation>Не принимает; возможно, занят другой программой</translation>
    </message>
    <message>
        <source>正在发送…</source>
        <translation>Отправка…</translation>
    </message>
    <message>
        <source>%1 已发送</source>
        <translation>Отправлено в %1</translation>
    </message>
    <message>
        <source>正在重试…</source>
        <translation>Повторная попытка…</translation>
    </message>
    <message>
        <source>复制两条命令，在终端中运行后即可打开屏幕</source>
        <translation>Скопировать две команды для терминала, открывающие доступ к экрану</translation>
    </message>
    <message>
        <source>设置未能保存</source>
        <translation>Не удалось сохранить настройки</translation>
    </message>
    <message>
        <source>已复制</source>
        <translation>Скопировано</translation>
    </message>
    <message>
        <source>复制命令</source>
        <translation>Скопировать команды</translation>
    </message>
    <message>
        <source>设置已换成默认值</source>
        <translation>Настройки сброшены</translation>
    </message>
    <message>
        <source>恢复我的设置</source>
        <translation>Вернуть мои настройки</translation>
    </message>
    <message>
        <source>保留现在的</source>
        <translation>Оставить эти</translation>
    </message>
    <message>
        <source>保存报告…</source>
        <translation>Сохранить отчёт…</translation>
    </message>
    <message>
        <source>保存支持报告</source>
        <translation>Сохранить отчёт для поддержки</translation>
    </message>
    <message>
        <source>文本文件 (*.txt)</source>
        <translation>Текстовые файлы (*.txt)</translation>
    </message>
    <message>
        <source>报告已保存到 %1。</source>
        <translation>Отчёт сохранён в %1.</translation>
    </message>
    <message>
        <source>无法保存报告：%1</source>
        <translation>Не удалось сохранить отчёт: %1</translation>
    </message>
    <message>
        <source>传感器…</source>
        <translation>Датчики…</translation>
    </message>
    <message>
        <source>传感器</source>
        <translation>Датчики</translation>
    </message>
    <message>
        <source>操作系统</source>
        <translation>Система</translation>
    </message>
    <message>
        <source>由温度推算</source>
        <translation>Вычислено по температуре</translation>
    </message>
    <message>
        <source>尚未读取</source>
        <translation>Ещё не считано</translation>
    </message>
    <message>
        <source>没有可用的传感器</source>
        <translation>Нет доступного датчика</translation>
    </message>
    <message>
        <source>没有读取权限</source>
        <translation>Нет права на чтение</translation>
    </message>
    <message>
        <source>未运行</source>
        <translation>Не запущено</translation>
    </message>
    <message>
        <source>没有响应</source>
        <translation>Нет ответа</translation>
    </message>
    <message>
        <source>读数不可信</source>
        <translation>Сообщает невозможное</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1（十分钟没有变化）</source>
        <translation>%1 (не меняется десять минут)</translation>
    </message>
    <message>
        <source>内核能耗计数器</source>
        <translation>Счётчики энергии ядра</translation>
    </message>
    <message>
        <source>处理器能耗驱动</source>
        <translation>Драйвер энергии процессора</translation>
    </message>
    <message>
        <source>内核硬件监控</source>
        <translation>Мониторинг оборудования ядра</translation>
    </message>
    <message>
        <source>处理器温区</source>
        <translation>Термозона процессора</translation>
    </message>
    <message>
        <source>Windows 能耗计数器</source>
        <translation>Счётчики энергии Windows</translation>
    </message>
    <message>
        <source>Windows 能耗表</source>
        <translation>Измеритель энергии Windows</translation>
    </message>
    <message>
        <source>主板温区</source>
        <translation>Термозона платы</translation>
    </message>
    <message>
        <source>此内核没有该处理器的能耗计数器；较新的内核或 zenergy 模块可能有</source>
        <translation>Это ядро не знает счётчика энергии этого процессора; новое ядро или модуль zenergy может знать</translation>
    </message>
    <message>
        <source>加载传感器模块：sudo modprobe coretemp（AMD：k10temp）</source>
        <translation>Загрузите модуль датчика: sudo modprobe coretemp (AMD: k10temp)</translation>
    </message>
    <message>
        <source>加载主板的传感器模块，例如 nct6775</source>
        <translation>Загрузите модуль датчиков платы, например nct6775</translation>
    </message>
    <message>
        <source>运行 HWiNFO 并打开 “Report value in Gadget”，或打开 LibreHardwareMonitor 的网络服务</source>
        <translation>Запустите HWiNFO с «Report value in Gadget» или LibreHardwareMonitor с веб-сервером</translation>
    </message>
    <message>
        <source>系统温区</source>
        <translation>Термозона системы</translation>
    </message>
    <message>
        <source>正在运行，但没有提供读数</source>
        <translation>Запущено, но показания не передаёт</translation>
    </message>
    <message>
        <source>主板传感器</source>
        <translation>Датчик платы</translation>
    </message>
    <message>
        <source>授予读取权限：见 %1 开头的说明</source>
        <translation>Дайте право на чтение: см. начало файла %1</translation>
    </message>
    <message>
        <source>滚轮缩放，Esc 退出修剪</source>
        <translation>Колесо — масштаб, Esc — выход</translation>
    </message>
    <message>
        <source>按回车结束输入</source>
        <translation>Enter — закончить ввод</translation>
    </message>
    <message>
        <source>拖动可交换位置，双击可输入文字</source>
        <translation>Перетащите, чтобы поменять местами; двойной щелчок — текст</translation>
    </message>
    <message>
        <source>双击可输入文字</source>
        <translation>Двойной щелчок — ввод текста</translation>
    </message>
    <message>
        <source>文字太长，屏幕上显示不全</source>
        <translation>Текст слишком длинный: конец не виден</translation>
    </message>
    <message>
        <source>五个位置已满：先取消一项，再勾选此项</source>
        <translation>Все пять мест заняты: снимите одну отметку и поставьте эту снова</translation>
    </message>
    <message>
        <source>找不到图片“%1”，暂用默认图片</source>
        <translation>Файл «%1» не найден, показана стандартная картинка</translation>
    </message>
    <message>
        <source>图片“%1”没有响应，暂用默认图片</source>
        <translation>Файл «%1» не отвечает, показана стандартная картинка</translation>
    </message>
    <message>
        <source>无法打开图片“%1”，暂用默认图片</source>
        <translation>Файл «%1» не открывается, показана стандартная картинка</translation>
    </message>
    <message>
        <source>温馨提示</source>
        <comment>before the program ends</comment>
        <translation>Выйти из Kivo Screen?</translation>
    </message>
    <message>
        <source>确定</source>
        <comment>ends the program</comment>
        <translation>Выйти</translation>
    </message>
    <message>
        <source>显示设计</source>
        <comment>over the values</comment>
        <translation>Показатели</translation>
    </message>
    <message>
        <source>显示设计</source>
        <comment>over the themes</comment>
        <translation>Тема</translation>
    </message>
    <message>
        <source>温馨提示</source>
        <comment>before a picture is deleted</comment>
        <translation>Удалить изображение?</translation>
    </message>
    <message>
        <source>确定</source>
        <comment>deletes the picture</comment>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>%1 瓦</source>
        <translation>%1 Вт</translation>
    </message>
    <message>
        <source>%1 转/分</source>
        <translation>%1 об/мин</translation>
    </message>
    <message>
        <source>屏幕方向</source>
        <translation>Ориентация экрана</translation>
    </message>
    <message>
        <source>项目数量</source>
        <translation>Число элементов</translation>
    </message>
    <message>
        <source>日期大小</source>
        <translation>Размер даты</translation>
    </message>
    <message>
        <source>选择背景图片；自己添加的图片按 F2 重命名，按 Delete 删除</source>
        <translation>Выберите фон; F2 переименует добавленное изображение, Delete удалит его</translation>
    </message>
    <message>
        <source>名称太多，无法保存此名称。</source>
        <translation>Имён слишком много, сохранить ещё одно нельзя.</translation>
    </message>
    <message>
        <source>是否删除图片“%1”？</source>
        <translation>«%1» исчезнет из списка; сам файл останется.</translation>
    </message>
    <message>
        <source>强调色取自图片</source>
        <translation>Акцент из картинки</translation>
    </message>
    <message>
        <source>图标和刻度使用背景图片的颜色</source>
        <translation>Значки и шкалы берут цвет из фонового изображения</translation>
    </message>
    <message>
        <source>变暗</source>
        <translation>Затемнение</translation>
    </message>
    <message>
        <source>让背景图片变暗</source>
        <translation>Затемняет фоновое изображение</translation>
    </message>
    <message>
        <source>模糊</source>
        <translation>Размытие</translation>
    </message>
    <message>
        <source>让背景图片模糊</source>
        <translation>Размывает фоновое изображение</translation>
    </message>
    <message>
        <source>布局文件</source>
        <translation>Файлы оформления</translation>
    </message>
    <message>
        <source>此文件不是布局文件，或已损坏。</source>
        <translation>Этот файл не содержит оформления или повреждён.</translation>
    </message>
    <message>
        <source>此布局由更新版本的程序创建。</source>
        <translation>Это оформление создано более новой версией программы.</translation>
    </message>
    <message>
        <source>此布局中的图片无法显示。</source>
        <translation>Изображение этого оформления нельзя показать.</translation>
    </message>
    <message>
        <source>背景图片无法打开，布局未导出。</source>
        <translation>Фоновое изображение не открывается, поэтому оформление не экспортировано.</translation>
    </message>
    <message>
        <source>无法保存此布局。</source>
        <translation>Не удалось сохранить это оформление.</translation>
    </message>
    <message>
        <source>无法读取此文件。</source>
        <translation>Не удалось прочитать этот файл.</translation>
    </message>
    <message>
        <source>导入布局</source>
        <translation>Импортировать оформление</translation>
    </message>
    <message>
        <source>导出布局</source>
        <translation>Экспортировать оформление</translation>
    </message>
    <message>
        <source>锁定时</source>
        <translation>При блокировке</translation>
    </message>
    <message>
        <source>睡眠时</source>
        <translation>Во время сна</translation>
    </message>
    <message>
        <source>屏幕保护时</source>
        <translation>С экранной заставкой</translation>
    </message>
    <message>
        <source>退出程序后</source>
        <translation>После выхода</translation>
    </message>
    <message>
        <source>照常</source>
        <comment>the screen at night</comment>
        <translation>Как обычно</translation>
    </message>
    <message>
        <source>调暗</source>
        <comment>the screen at night</comment>
        <translation>Тусклее</translation>
    </message>
    <message>
        <source>全黑</source>
        <comment>the screen at night</comment>
        <translation>Чёрный</translation>
    </message>
    <message>
        <source>自动熄屏</source>
        <translation>Гасить экран</translation>
    </message>
    <message>
        <source>夜间</source>
        <translation>Ночью</translation>
    </message>
    <message>
        <source>夜间时段</source>
        <translation>Ночь</translation>
    </message>
    <message>
        <source>从</source>
        <comment>the night begins</comment>
        <translation>С</translation>
    </message>
    <message>
        <source>到</source>
        <comment>the night ends</comment>
        <translation>До</translation>
    </message>
    <message>
        <source>屏幕已熄灭：程序退出</source>
        <translation>Экран погашен: выход</translation>
    </message>
    <message>
        <source>屏幕已熄灭：系统睡眠</source>
        <translation>Экран погашен: сон</translation>
    </message>
    <message>
        <source>屏幕已熄灭：已锁定</source>
        <translation>Экран погашен: блокировка</translation>
    </message>
    <message>
        <source>屏幕已熄灭：屏幕保护</source>
        <translation>Экран погашен: заставка</translation>
    </message>
    <message>
        <source>屏幕已熄灭：命令要求</source>
        <translation>Экран погашен: по команде</translation>
    </message>
    <message>
        <source>屏幕已熄灭：夜间</source>
        <translation>Экран погашен: ночь</translation>
    </message>
    <message>
        <source>屏幕已调暗：夜间</source>
        <translation>Экран тусклее: ночь</translation>
    </message>
</context>
<context>
    <name>PreviewItem</name>
    <message>
        <source>左上</source>
        <translation>Слева вверху</translation>
    </message>
    <message>
        <source>左下</source>
        <translation>Слева внизу</translation>
    </message>
    <message>
        <source>中央</source>
        <translation>В центре</translation>
    </message>
    <message>
        <source>右下</source>
        <translation>Справа внизу</translation>
    </message>
    <message>
        <source>右上</source>
        <translation>Справа вверху</translation>
    </message>
    <message>
        <source>上行</source>
        <translation>Верхняя строка</translation>
    </message>
    <message>
        <source>中行</source>
        <translation>Средняя строка</translation>
    </message>
    <message>
        <source>下行</source>
        <translation>Нижняя строка</translation>
    </message>
    <message>
        <source>空位</source>
        <translation>Пустое место</translation>
    </message>
</context>
<context>
    <name>ZoomWidget</name>
    <message>
        <source>CPU温度</source>
        <translation>Темп. ЦП</translation>
    </message>
    <message>
        <source>CPU使用率</source>
        <translation>Загр. ЦП</translation>
    </message>
    <message>
        <source>内存使用率</source>
        <translation>Память</translation>
    </message>
    <message>
        <source>时间</source>
        <translation>Время</translation>
    </message>
    <message>
        <source>功耗</source>
        <translation>Мощн.</translation>
    </message>
    <message>
        <source>日期</source>
        <translation>Дата</translation>
    </message>
    <message>
        <source>风扇转速</source>
        <translation>Вентил.</translation>
    </message>
    <message>
        <source>其他</source>
        <translation>Другое</translation>
    </message>
    <message>
        <source>屏幕预览</source>
        <translation>Предпросмотр экрана</translation>
    </message>
    <message>
        <source>拖动边框修剪图片，滚轮缩放
方向键移动，加减键缩放，Esc 退出</source>
        <translation>Тяните рамку, чтобы кадрировать; колесо — масштаб
Стрелки двигают, плюс и минус меняют масштаб, Esc — выход</translation>
    </message>
    <message>
        <source>拖动可交换位置，双击可输入文字
方向键选择，空格键拿起和放下，回车键输入</source>
        <translation>Перетащите, чтобы поменять местами; двойной щелчок — ввод текста
Стрелки выбирают, пробел берёт и кладёт, Enter — ввод</translation>
    </message>
    <message>
        <source>双击进行输入</source>
        <translation>Введите текст</translation>
    </message>
    <message>
        <source>自由文字</source>
        <translation>Свободный текст</translation>
    </message>
    <message>
        <source>双击可输入文字，文字可拖动
回车键输入，翻页键移动文字</source>
        <translation>Двойной щелчок — ввод текста, перетаскивание — перемещение
Enter — ввод, Page Up и Page Down двигают текст</translation>
    </message>
    <message>
        <source>剪切</source>
        <translation>Вырезать</translation>
    </message>
    <message>
        <source>复制</source>
        <translation>Копировать</translation>
    </message>
    <message>
        <source>粘贴</source>
        <translation>Вставить</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>Выделить всё</translation>
    </message>
</context>
<context>
    <name>kivo::ColorBar</name>
    <message>
        <source>文字颜色</source>
        <translation>Цвет текста</translation>
    </message>
    <message>
        <source>当前颜色</source>
        <translation>Выбранный цвет</translation>
    </message>
</context>
<context>
    <name>kivo::EditBar</name>
    <message>
        <source>大</source>
        <translation>Круп.</translation>
    </message>
    <message>
        <source>中</source>
        <translation>Сред.</translation>
    </message>
    <message>
        <source>小</source>
        <translation>Мелк.</translation>
    </message>
    <message>
        <source>文字大小</source>
        <translation>Размер текста</translation>
    </message>
    <message>
        <source>文字颜色</source>
        <translation>Цвет текста</translation>
    </message>
    <message>
        <source>修剪</source>
        <translation>Кадр</translation>
    </message>
    <message>
        <source>选取图片的显示区域</source>
        <translation>Выбрать видимую часть изображения</translation>
    </message>
    <message>
        <source>返回</source>
        <translation>Назад</translation>
    </message>
    <message>
        <source>撤销上一步</source>
        <translation>Отменить последний шаг</translation>
    </message>
    <message>
        <source>重做</source>
        <translation>Вперёд</translation>
    </message>
    <message>
        <source>恢复撤销的步骤</source>
        <translation>Вернуть отменённый шаг</translation>
    </message>
</context>
<context>
    <name>kivo::ExitMessageBox</name>
    <message>
        <source>确定</source>
        <translation>ОК</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>温馨提示</source>
        <translation>Внимание</translation>
    </message>
</context>
<context>
    <name>kivo::NimbProcessDialog</name>
    <message>
        <source>正在更新屏幕</source>
        <translation>Обновление экрана</translation>
    </message>
</context>
<context>
    <name>kivo::PictureList</name>
    <message>
        <source>选择图片文件夹</source>
        <translation>Добавить</translation>
    </message>
    <message>
        <source>默认图片</source>
        <translation>Встроенный</translation>
    </message>
    <message>
        <source>背景图片</source>
        <translation>Фоновые изображения</translation>
    </message>
    <message>
        <source>All Files(*)</source>
        <translation>Все файлы (*)</translation>
    </message>
    <message>
        <source>找不到此图片</source>
        <translation>Изображение не найдено</translation>
    </message>
    <message>
        <source>此图片没有响应</source>
        <translation>Изображение не отвечает</translation>
    </message>
    <message>
        <source>无法打开此图片</source>
        <translation>Изображение не открывается</translation>
    </message>
    <message>
        <source>重命名</source>
        <translation>Переименовать</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Удалить</translation>
    </message>
</context>
<context>
    <name>kivo::PictureNameEdit</name>
    <message>
        <source>图片名称</source>
        <translation>Название изображения</translation>
    </message>
</context>
<context>
    <name>kivo::VirtualScreenWindow</name>
    <message>
        <source>%1 报告/秒   %2 字节/秒</source>
        <translation>%1 отч./с   %2 байт/с</translation>
    </message>
    <message>
        <source>未连接</source>
        <translation>Отключён</translation>
    </message>
    <message>
        <source>拔出</source>
        <translation>Отключить</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>Подключить</translation>
    </message>
    <message>
        <source>虚拟屏幕</source>
        <translation>Виртуальный экран</translation>
    </message>
</context>
</TS>
